#include "uModalDriver.h"

#include "uGuiTools.h"

#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QEvent>
#include <QFileDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr int Patience = 30000; // milliseconds that a window may stay open after its answer

qint64 Now()
{
    static const QElapsedTimer clock = [] {
        QElapsedTimer started;
        started.start();
        return started;
    }();
    return clock.elapsed();
}

bool IsNamed(const QWidget *window, const QString &name)
{
    return window->objectName() == name || window->metaObject()->className() == name ||
           window->windowTitle() == name;
}

void Close(QWidget *window)
{
    if (auto *dialog = qobject_cast<QDialog *>(window))
        dialog->reject();
    else
        window->close();
}

QString TextOf(const QWidget *widget)
{
    if (auto *label = qobject_cast<const QLabel *>(widget))
        return label->text();
    if (auto *button = qobject_cast<const QAbstractButton *>(widget))
        return button->text();
    if (auto *box = qobject_cast<const QGroupBox *>(widget))
        return box->title();
    if (auto *message = qobject_cast<const QPlainTextEdit *>(widget))
        return message->toPlainText();
    return {};
}

} // namespace

TModalDriver::TModalDriver()
{
    Arm();
}

TModalDriver::~TModalDriver()
{
    for (const TAnswer &answer : FAnswers)
        ADD_FAILURE() << "No window opened for an answer that was ready"
                      << (answer.Name.isEmpty() ? "" : ": " + answer.Name.toStdString());
}

void TModalDriver::Expect(THandler handler)
{
    Expect(QString(), std::move(handler));
}

void TModalDriver::Expect(const QString &name, THandler handler)
{
    FAnswers.append({name, std::move(handler), nullptr});
}

void TModalDriver::ExpectMessage(const QString &text, QMessageBox::StandardButton button)
{
    Expect([text, button](QWidget *window) {
        auto *box = qobject_cast<QMessageBox *>(window);
        QAbstractButton *answer = box ? box->button(button) : nullptr;
        EXPECT_TRUE(box && (box->text() + '\n' + box->informativeText()).contains(text) && answer)
            << "A message \"" << text.toStdString() << "\" was expected, not "
            << Describe(window).toStdString();
        if (answer)
            TGuiTools::Click(answer);
        else
            Close(window);
    });
}

void TModalDriver::ExpectFile(const QString &path)
{
    Expect([path](QWidget *window) {
        auto *dialog = qobject_cast<QFileDialog *>(window);
        EXPECT_TRUE(dialog) << "A file dialog was expected, not " << Describe(window).toStdString();
        if (!dialog || path.isEmpty())
            return Close(window);
        Find<QLineEdit>(dialog, QStringLiteral("fileNameEdit"))->setText(path);
        // accept() is protected in QFileDialog and public in its base.
        static_cast<QDialog *>(dialog)->accept();
    });
}

void TModalDriver::ExpectMenu(TMenuHandler handler)
{
    FAnswers.append({QStringLiteral("menu"), nullptr, std::move(handler)});
}

void TModalDriver::ExpectMenu(const QString &caption)
{
    ExpectMenu([caption](QMenu *menu) {
        // exec() answers with the entry only when it was chosen, not when it was triggered.
        menu->setActiveAction(&TGuiTools::NeedEntry(menu, caption));
        QTest::keyClick(menu, Qt::Key_Return);
    });
}

void TModalDriver::Allow(const QString &name)
{
    FAllowed << name;
}

QString TModalDriver::Describe(const QWidget *window)
{
    QStringList texts;
    if (auto *box = qobject_cast<const QMessageBox *>(window))
        texts << box->text();
    for (const QWidget *child : window->findChildren<QWidget *>())
        if (const QString text = TextOf(child); !text.isEmpty() && child->isVisible())
            texts << text;
    texts.removeDuplicates();
    return QStringLiteral("%1 \"%2\" titled \"%3\": %4")
        .arg(QString::fromLatin1(window->metaObject()->className()), window->objectName(),
             window->windowTitle(), texts.join(" | "));
}

// One-shot timers, armed anew before a handler runs: the handler itself may open a window, and a
// timer is not served again inside its own event.
void TModalDriver::Arm()
{
    QTimer::singleShot(10, this, [this] { Poll(); });
}

void TModalDriver::Poll()
{
    Arm();
    FOpen.removeIf([](const TOpen &open) { return !open.Window; });
    if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget()))
        LookAtMenu(menu);
    else if (QWidget *window = QApplication::activeModalWidget(); window && window->isVisible())
        Look(window);
}

void TModalDriver::Look(QWidget *window)
{
    if (TOpen *open = FindOpen(window))
        return CheckAge(*open);
    FSeen << Describe(window);
    Remember(window);
    if (!FOpen.last().Allowed)
        Answer(window);
}

void TModalDriver::Remember(QWidget *window)
{
    FOpen.append({window, Now(), IsAllowed(window)});
    window->installEventFilter(this);
}

// A window object that is shown again is a new question, however soon that is.
bool TModalDriver::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Hide)
        FOpen.removeIf([watched](const TOpen &open) { return open.Window == watched; });
    return false;
}

void TModalDriver::CheckAge(TOpen &open)
{
    if (open.Allowed || Now() - open.Since < Patience)
        return;
    open.Since = Now();
    ADD_FAILURE() << "Still open after its answer: " << Describe(open.Window).toStdString();
    Close(open.Window);
}

void TModalDriver::Answer(QWidget *window)
{
    const bool fits = !FAnswers.isEmpty() && FAnswers.first().Window &&
                      (FAnswers.first().Name.isEmpty() || IsNamed(window, FAnswers.first().Name));
    if (!fits) {
        ADD_FAILURE() << "Nobody expected " << Describe(window).toStdString();
        return Close(window);
    }
    const THandler handler = FAnswers.takeFirst().Window;
    // What a handler throws must not fly through the window's own event loop.
    const QPointer<QWidget> guard = window;
    try {
        handler(window);
    } catch (const std::exception &e) {
        ADD_FAILURE() << e.what();
        if (guard)
            Close(guard);
    }
}

void TModalDriver::LookAtMenu(QMenu *menu)
{
    if (FAnswers.isEmpty() || !FAnswers.first().Menu) {
        // A test may open a menu by itself; left open, it would keep its exec() for ever.
        if (!FindOpen(menu))
            Remember(menu);
        return CheckAge(*FindOpen(menu));
    }
    const TMenuHandler handler = FAnswers.takeFirst().Menu;
    try {
        handler(menu);
    } catch (const std::exception &e) {
        ADD_FAILURE() << e.what();
    }
    menu->close();
}

bool TModalDriver::IsAllowed(const QWidget *window) const
{
    return std::any_of(FAllowed.begin(), FAllowed.end(),
                       [window](const QString &name) { return IsNamed(window, name); });
}

TModalDriver::TOpen *TModalDriver::FindOpen(const QWidget *window)
{
    for (TOpen &open : FOpen)
        if (open.Window == window)
            return &open;
    return nullptr;
}
