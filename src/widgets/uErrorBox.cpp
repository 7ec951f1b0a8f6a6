#include "widgets/uErrorBox.h"

#include "widgets/uIcons.h"
#include "widgets/uStyle.h"
#include "widgets/uWaitCursor.h"

#include <QApplication>
#include <QClipboard>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>
#include <climits>

namespace {

const QString Caption = QStringLiteral("Korvane");

constexpr double NarrowText = 20;    // ems
constexpr double WideText = 36;      // ems
constexpr double DetailsHeight = 12; // ems
constexpr double ScreenHeight = 0.4; // of the screen, for the message alone
constexpr double ScreenWidth = 0.6;

/// A text that can be selected, as large as it needs to be within the screen.
class TTextView : public QPlainTextEdit
{
public:
    TTextView(const QString &name, const QString &accessibleName, const QString &text,
              QWidget *parent)
        : QPlainTextEdit(text, parent)
    {
        setObjectName(name);
        setAccessibleName(accessibleName);
        setReadOnly(true);
        setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        setTabChangesFocus(true);
        setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    }

    QSize sizeHint() const override
    {
        const int around = 2 * int(document()->documentMargin()) + 2 * frameWidth();
        // The bar's room is kept free so that a last word does not bring the bar up.
        const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        const QSize screenSize = screen()->availableSize();
        const int widest = std::min(TAppStyle::Px(WideText), int(screenSize.width() * ScreenWidth));
        // What lies beyond these characters has to be scrolled to in any case.
        const QString text = toPlainText().left(6000);
        const QRect room(0, 0, widest - around - bar, INT_MAX / 2);
        const QRect needed = fontMetrics().boundingRect(
            room, Qt::TextWordWrap | Qt::TextWrapAnywhere | Qt::TextExpandTabs, text);
        const int width = std::max(needed.width() + around + bar, TAppStyle::Px(NarrowText));
        const int height = needed.height() + fontMetrics().lineSpacing() / 2 + around;
        return {std::min(width, widest), std::min(height, int(screenSize.height() * ScreenHeight))};
    }

    QSize minimumSizeHint() const override { return sizeHint(); }
};

QPushButton *MakeButton(const QString &name, const QString &text, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    return button;
}

QPixmap Sign(const QString &name, const QWidget *widget)
{
    const int size = widget->style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    return TIcons::Icon(name).pixmap(QSize(size, size), widget->devicePixelRatioF());
}

} // namespace

void TErrorBox::Execute(QWidget *parent, const QString &message, const QString &details)
{
    // The hourglass of the work that failed would stand over the box.
    TWaitCursor::Hide();
    TErrorBox box(parent, message, details);
    box.exec();
}

TErrorBox::TErrorBox(QWidget *parent, const QString &message, const QString &details)
    : QDialog(parent), FMessage(message), FDetails(details)
{
    setObjectName(QStringLiteral("frmErrorBox"));
    setWindowTitle(Caption);
    setModal(true);
    MakeControls();
}

QString TErrorBox::Text() const
{
    return FDetails.isEmpty() ? FMessage : FMessage + QStringLiteral("\n\n") + FDetails;
}

void TErrorBox::MakeControls()
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(MakeMessageRow(), 1);
    FDetailsView = MakeDetails();
    layout->addWidget(FDetailsView, 1);
    layout->addSpacing(TAppStyle::Px(0.4));
    layout->addWidget(MakeButtons());
}

QWidget *TErrorBox::MakeMessageRow()
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(TAppStyle::Px(0.6));
    auto *sign = new QLabel(row);
    sign->setPixmap(Sign(QStringLiteral("error"), this));
    layout->addWidget(sign, 0, Qt::AlignTop);
    // Plain text: a server's message may hold what looks like markup.
    auto *message =
        new TTextView(QStringLiteral("edMessage"), QStringLiteral("Message"), FMessage, row);
    message->setFrameShape(QFrame::NoFrame);
    message->viewport()->setAutoFillBackground(false);
    layout->addWidget(message, 1);
    return row;
}

QPlainTextEdit *TErrorBox::MakeDetails()
{
    auto *view =
        new TTextView(QStringLiteral("edDetails"), QStringLiteral("Details"), FDetails, this);
    view->setFont(TAppStyle::MonospaceFont());
    view->setMinimumHeight(TAppStyle::Px(DetailsHeight));
    view->hide();
    return view;
}

QWidget *TErrorBox::MakeButtons()
{
    auto *bar = new QWidget(this);
    auto *layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *details = MakeButton(QStringLiteral("butDetails"), QStringLiteral("Details"), bar);
    details->setCheckable(true);
    details->setVisible(!FDetails.isEmpty());
    connect(details, &QPushButton::toggled, this, &TErrorBox::ShowDetails);
    auto *copy = MakeButton(QStringLiteral("butCopy"), QStringLiteral("Copy"), bar);
    connect(copy, &QPushButton::clicked, this, &TErrorBox::Copy);
    auto *ok = MakeButton(QStringLiteral("butOK"), QStringLiteral("OK"), bar);
    ok->setDefault(true);
    ok->setFocus();
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    layout->addWidget(details);
    layout->addWidget(copy);
    layout->addStretch(1);
    layout->addWidget(ok);
    return bar;
}

void TErrorBox::ShowDetails(bool shown)
{
    FDetailsView->setVisible(shown);
    layout()->activate();
    adjustSize();
}

void TErrorBox::Copy() const
{
    QApplication::clipboard()->setText(Text());
}

bool TQuestionBox::Ask(QWidget *parent, const QString &question)
{
    TWaitCursor::Hide();
    QMessageBox box(parent);
    box.setObjectName(QStringLiteral("frmQuestionBox"));
    box.setWindowTitle(Caption);
    box.setTextFormat(Qt::PlainText);
    box.setText(question);
    box.setIconPixmap(Sign(QStringLiteral("question"), &box));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.addButton(QMessageBox::Yes)->setObjectName(QStringLiteral("butYes"));
    box.addButton(QMessageBox::No)->setObjectName(QStringLiteral("butNo"));
    box.setDefaultButton(QMessageBox::Yes);
    box.setEscapeButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}
