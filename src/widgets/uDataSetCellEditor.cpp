#include "widgets/uDataSetCellEditor.h"

#include "widgets/uValuePopups.h"

#include <QDate>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPointer>
#include <QRegularExpression>
#include <QTextDocument>
#include <QToolButton>
#include <algorithm>
#include <limits>

namespace {

constexpr int LongestLine = 1000; // characters; longer values are read in several lines

bool WantsLines(const QString &text)
{
    return text.contains(u'\n') || text.contains(u'\r') || text.size() > LongestLine;
}

struct TLines
{
    QStringList Texts;
    QStringList Ends; // behind each line but the last
};

// As the box tells lines apart.
TLines LinesOf(const QString &text)
{
    static const QRegularExpression lineEnd("\r\n|[\n\r\\x{2029}\\x{FDD0}\\x{FDD1}]");
    TLines lines{text.split(lineEnd), {}};
    for (const QRegularExpressionMatch &match : lineEnd.globalMatch(text))
        lines.Ends += match.captured();
    return lines;
}

QString EndOfTypedLine(const QString &before)
{
    if (before.contains("\r\n"))
        return "\r\n";
    return before.contains(u'\r') && !before.contains(u'\n') ? "\r" : "\n";
}

// The first and the last lines that are as they were keep the ends that they had.
QStringList EndsOf(const QStringList &lines, const TLines &before, const QString &typed)
{
    const auto common = [](auto from, auto to, auto oldFrom, auto oldTo) {
        return std::mismatch(from, to, oldFrom, oldTo).first - from;
    };
    const QStringList &old = before.Texts;
    if (lines.size() == old.size()) // no line came or went
        return before.Ends;
    const auto first = common(lines.begin(), lines.end(), old.begin(), old.end());
    const auto last = common(lines.rbegin(), lines.rend() - first, old.rbegin(), old.rend());
    QStringList ends;
    for (qsizetype end = 0; end < lines.size() - 1; ++end) {
        const qsizetype fromLast = lines.size() - 1 - end;
        if (end < first && end < before.Ends.size())
            ends += before.Ends[end];
        else if (fromLast <= last && fromLast <= before.Ends.size())
            ends += before.Ends[before.Ends.size() - fromLast];
        else
            ends += typed;
    }
    return ends;
}

// The box knows one kind of line end, and its plain text makes blanks of no-break spaces: what was
// not typed goes back as it came.
QString BoxText(const QPlainTextEdit &box, const QString &before)
{
    const QStringList lines = box.document()->toRawText().split(QChar::ParagraphSeparator);
    const QStringList ends = EndsOf(lines, LinesOf(before), EndOfTypedLine(before));
    QString text = lines.first();
    for (qsizetype line = 1; line < lines.size(); ++line)
        text += ends[line - 1] + lines[line];
    return text;
}

} // namespace

TDataSetCellEditor::TDataSetCellEditor(TDataSetCellKind kind, const QStringList &members,
                                       QWidget *parent)
    : QWidget(parent), FKind(kind), FMembers(members), FLine(new QLineEdit(this))
{
    // The cell must not shine through beside the line.
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(1, 1, 1, 1);
    row->setSpacing(0);
    row->addWidget(FLine, 1);
    FLine->setObjectName("edCell");
    FLine->setFrame(false);
    // By itself the control cuts what is longer than 32767 characters.
    FLine->setMaxLength(std::numeric_limits<int>::max());
    setFocusProxy(FLine);
    if (kind == ckLine)
        return;
    FButton = new QToolButton(this);
    FButton->setObjectName("butCell");
    FButton->setText(kind == ckText ? QStringLiteral("…") : QStringLiteral("▾"));
    FButton->setToolTip(kind == ckText ? "Several lines (F4)" : "Choose (F4)");
    FButton->setFocusPolicy(Qt::NoFocus);
    FButton->setAutoRaise(true);
    FButton->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
    row->addWidget(FButton);
    connect(FButton, &QToolButton::clicked, this, &TDataSetCellEditor::PressButton);
}

void TDataSetCellEditor::SetName(const QString &name)
{
    FLine->setAccessibleName(name);
    if (FButton)
        FButton->setAccessibleName(name);
    if (FBox)
        FBox->setAccessibleName(name);
}

QWidget *TDataSetCellEditor::Control() const
{
    return FBox ? static_cast<QWidget *>(FBox) : FLine;
}

void TDataSetCellEditor::SetText(const QString &text)
{
    FBefore = text;
    if (!FBox && WantsLines(text))
        MakeBox();
    if (FBox) {
        FBox->setPlainText(text);
        FBox->selectAll();
    } else {
        FLine->setText(text);
        FLine->selectAll();
    }
}

QString TDataSetCellEditor::Text() const
{
    return FBox ? BoxText(*FBox, FBefore) : FLine->text();
}

bool TDataSetCellEditor::IsModified() const
{
    if (FBox && !FIsGrown)
        return FBox->document()->isModified();
    return Text() != FBefore;
}

// The line goes: there is one control of the editor's name, and it has the focus.
void TDataSetCellEditor::MakeBox()
{
    FBox = new QPlainTextEdit(this);
    FBox->setObjectName("edCell");
    FBox->setFrameShape(QFrame::NoFrame);
    FBox->setAccessibleName(FLine->accessibleName());
    layout()->addWidget(FBox);
    setFocusProxy(FBox);
    // Ahead of the line's end: a line that loses the focus to nobody would end the edit.
    if (isVisible())
        FBox->show();
    if (FLine->hasFocus())
        FBox->setFocus();
    delete FButton;
    FButton = nullptr;
    delete FLine;
    FLine = nullptr;
}

void TDataSetCellEditor::Grow()
{
    const QString text = FLine->text();
    FIsGrown = true;
    MakeBox();
    FBox->setPlainText(text);
    FBox->moveCursor(QTextCursor::End);
    Q_EMIT OnGrown();
}

void TDataSetCellEditor::PressButton()
{
    if (!FButton)
        return;
    if (FKind == ckText) {
        // The button that is being clicked must not go inside its own event.
        QMetaObject::invokeMethod(
            this, [this] { Grow(); }, Qt::QueuedConnection);
        FButton->setEnabled(false);
        return;
    }
    const QPointer<TDataSetCellEditor> self = this; // a popup waits, and the rows may go meanwhile
    QString value = FLine->text();
    QDate day = TValuePopups::DayOf(value);
    FIsChoosing = true;
    const bool isChosen = FKind == ckOne       ? TValuePopups::ChooseOne(this, FMembers, value)
                          : FKind == ckSeveral ? TValuePopups::ChooseSeveral(this, FMembers, value)
                                               : TValuePopups::ChooseDate(this, day);
    if (!self)
        return;
    FIsChoosing = false;
    if (!isChosen)
        return;
    if (FKind == ckDate || FKind == ckMoment)
        value = TValuePopups::WithDay(value, day, FKind == ckMoment);
    FLine->setText(value);
    FLine->setModified(true);
    FLine->setFocus();
    if (FKind == ckOne)
        Q_EMIT OnChosen();
}

// It may be larger than its cell, so that it needs an edge of its own.
void TDataSetCellEditor::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

// What the line leaves over is not for the grid: it would move there.
void TDataSetCellEditor::keyPressEvent(QKeyEvent *event)
{
    event->accept();
}
