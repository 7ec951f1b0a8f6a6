#include "widgets/uEditorGutter.h"

#include "widgets/uTextEditorColors.h"
#include "widgets/uTextEditorControl.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

namespace {

const int LeastDigits = 3; // so that short texts don't make the editor jump sideways

int DigitsOf(qsizetype number)
{
    return int(QString::number(number).size());
}

} // namespace

TEditorGutter::TEditorGutter(TTextEditorControl *control, QWidget *parent)
    : QWidget(parent), FControl(control), FFont(TTextEditorColors::EditorFont())
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Ignored);
    setCursor(Qt::ArrowCursor);
    connect(control, &QsciScintilla::SCN_UPDATEUI, this, &TEditorGutter::Refresh);
    connect(control, &QsciScintilla::SCN_ZOOM, this, &TEditorGutter::Refresh);
    connect(control, &QsciScintilla::linesChanged, this, &TEditorGutter::Refresh);
    connect(control->verticalScrollBar(), &QScrollBar::valueChanged, this, &TEditorGutter::Refresh);
}

QString TEditorGutter::MarkOf(qsizetype line, qsizetype caretLine)
{
    const qsizetype number = line + 1;
    if (line == caretLine || number % 10 == 0)
        return QString::number(number);
    return number % 5 == 0 ? QStringLiteral("-") : QStringLiteral("·");
}

void TEditorGutter::SetFont(const QFont &font)
{
    FFont = font;
    Refresh();
}

QFont TEditorGutter::ZoomedFont() const
{
    QFont font = FFont;
    const qreal zoom = FControl->Send(QsciScintilla::SCI_GETZOOM);
    // The component draws nothing smaller than two points either.
    font.setPointSizeF(std::max(2.0, font.pointSizeF() + zoom));
    return font;
}

QSize TEditorGutter::sizeHint() const
{
    const QFontMetrics metrics(ZoomedFont());
    const int digits =
        std::max(LeastDigits, DigitsOf(FControl->Send(QsciScintilla::SCI_GETLINECOUNT)));
    return {metrics.horizontalAdvance(u'0') * (digits + 1), 0};
}

void TEditorGutter::Refresh()
{
    if (sizeHint().width() != width())
        updateGeometry();
    update();
}

void TEditorGutter::paintEvent(QPaintEvent *)
{
    const TTextEditorColors colors(palette());
    QPainter painter(this);
    painter.fillRect(rect(), colors.GutterPaper());
    painter.setFont(ZoomedFont());
    const int height = int(FControl->Send(QsciScintilla::SCI_TEXTHEIGHT, 0));
    const int right = width() - painter.fontMetrics().horizontalAdvance(u'0') / 2;
    const qsizetype top = FControl->Send(QsciScintilla::SCI_GETFIRSTVISIBLELINE);
    const qsizetype lines = FControl->Send(QsciScintilla::SCI_GETLINECOUNT);
    const qsizetype caret = FControl->LineOf(FControl->CaretPosition());
    for (qsizetype line = LineAt(0); line < lines; ++line) {
        const qsizetype row = FControl->Send(QsciScintilla::SCI_VISIBLEFROMDOCLINE, line) - top;
        const int y = int(row) * height;
        if (y >= this->height())
            break;
        painter.setPen(line == caret ? colors.GutterCaretText() : colors.GutterText());
        painter.drawText(QRect(0, y, right, height), Qt::AlignRight | Qt::AlignVCenter,
                         MarkOf(line, caret));
    }
}

qsizetype TEditorGutter::LineAt(int y) const
{
    const long height = FControl->Send(QsciScintilla::SCI_TEXTHEIGHT, 0);
    const long top = FControl->Send(QsciScintilla::SCI_GETFIRSTVISIBLELINE);
    const long row = top + y / std::max(1L, height);
    return FControl->Send(QsciScintilla::SCI_DOCLINEFROMVISIBLE, std::max(0L, row));
}

void TEditorGutter::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    FPressedLine = LineAt(int(event->position().y()));
    SelectLines(FPressedLine, FPressedLine);
    FControl->setFocus(Qt::MouseFocusReason);
}

void TEditorGutter::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() & Qt::LeftButton)
        SelectLines(FPressedLine, LineAt(int(event->position().y())));
}

void TEditorGutter::SelectLines(qsizetype from, qsizetype to)
{
    const auto startOf = [this](qsizetype line) {
        const long lines = FControl->Send(QsciScintilla::SCI_GETLINECOUNT);
        return line < lines ? FControl->LineStart(line) : FControl->Size();
    };
    const bool isDown = to >= from;
    FControl->Send(QsciScintilla::SCI_SETSEL, startOf(isDown ? from : from + 1),
                   startOf(isDown ? to + 1 : to));
}

void TEditorGutter::wheelEvent(QWheelEvent *event)
{
    QApplication::sendEvent(FControl->viewport(), event);
}
