#include "widgets/uCompletionList.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QListView>
#include <QScreen>
#include <QScrollBar>
#include <QStringListModel>
#include <QVBoxLayout>

namespace {

constexpr int NarrowestWidth = 160; // pixels, as is the next
constexpr int WidestWidth = 520;
constexpr int MeasuredTexts = 200; // widths of more are not looked at: a list may have thousands

QFont ListFont()
{
    QFont font("Consolas");
    font.setStyleHint(QFont::Monospace);
    font.setPointSize(QFontDatabase::systemFont(QFontDatabase::FixedFont).pointSize());
    if (!QFontInfo(font).fixedPitch())
        font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    return font;
}

} // namespace

TCompletionList::TCompletionList(QWidget *editor)
    : QFrame(editor->window(), Qt::ToolTip | Qt::FramelessWindowHint), FEditor(editor),
      FView(new QListView(this)), FModel(new QStringListModel(this))
{
    setObjectName("cpMain");
    setAccessibleName("Completion");
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setFrameShape(QFrame::Box);
    FView->setObjectName("lstCompletion");
    FView->setAccessibleName("Completion");
    FView->setFocusPolicy(Qt::NoFocus);
    FView->setFrameShape(QFrame::NoFrame);
    FView->setMinimumSize(1, 1); // a view alone wants room for more than one line
    FView->setUniformItemSizes(true);
    FView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    FView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    FView->setTextElideMode(Qt::ElideRight);
    FView->setFont(ListFont());
    // A list without the focus would paint its current row as if it were of no account.
    QPalette palette = FView->palette();
    for (const QPalette::ColorRole role : {QPalette::Highlight, QPalette::HighlightedText})
        palette.setColor(QPalette::Inactive, role, palette.color(QPalette::Active, role));
    FView->setPalette(palette);
    FView->setModel(FModel);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(FView);
    connect(FView, &QListView::clicked, this, [this] { Choose(); });
}

void TCompletionList::Open(const QStringList &texts, const QPoint &corner, int lineHeight)
{
    FCorner = corner;
    FLineHeight = lineHeight;
    SetTexts(texts);
    show();
    raise();
}

void TCompletionList::SetTexts(const QStringList &texts)
{
    FModel->setStringList(texts);
    FView->setCurrentIndex(FModel->index(0));
    FitSize();
}

QStringList TCompletionList::Texts() const
{
    return FModel->stringList();
}

int TCompletionList::CurrentRow() const
{
    return FView->currentIndex().row();
}

void TCompletionList::FitSize()
{
    const QStringList texts = FModel->stringList();
    const QFontMetrics metrics(FView->font());
    int width = NarrowestWidth;
    for (const QString &text : texts.mid(0, MeasuredTexts))
        width = qMax(width, metrics.horizontalAdvance(text));
    const int row = qMax(1, FView->sizeHintForRow(0));
    const int scrollBar = FView->verticalScrollBar()->sizeHint().width();
    const int frame = 2 * frameWidth();
    // The same height for few texts: a list that grows and shrinks under the caret while one types
    // is restless, and may jump to the other side of the line.
    resize(qMin(width + scrollBar + 16, WidestWidth) + frame, LinesInWindow * row + frame);
    QPoint corner = FCorner;
    if (const QScreen *screen = FEditor->screen()) {
        const QRect room = screen->availableGeometry();
        if (corner.y() + height() > room.bottom())
            corner.setY(FCorner.y() - FLineHeight - height());
        corner.setX(
            qBound(room.left(), corner.x(), qMax(room.left(), room.right() - this->width())));
    }
    move(corner);
}

bool TCompletionList::TakeKey(QKeyEvent *key)
{
    if (!isVisible() || key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return false;
    switch (key->key()) {
    case Qt::Key_Up:
        Move(-1);
        return true;
    case Qt::Key_Down:
        Move(1);
        return true;
    case Qt::Key_PageUp:
        Move(1 - LinesInWindow);
        return true;
    case Qt::Key_PageDown:
        Move(LinesInWindow - 1);
        return true;
    case Qt::Key_Tab:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Choose();
        return true;
    case Qt::Key_Escape:
        hide();
        return true;
    default:
        return false;
    }
}

void TCompletionList::Move(int rows)
{
    const int last = FModel->rowCount() - 1;
    FView->setCurrentIndex(FModel->index(qBound(0, CurrentRow() + rows, last)));
}

void TCompletionList::Choose()
{
    const int row = CurrentRow();
    hide();
    if (row >= 0)
        Q_EMIT OnChosen(row);
}
