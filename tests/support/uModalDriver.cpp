#include "uModalDriver.h"

#include "uGuiTools.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

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
        for (const char *shown : {"text", "title", "plainText"})
            if (child->isVisible())
                texts << child->property(shown).toString();
    texts.removeDuplicates();
    texts.removeAll(QString());
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
    if (auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget()))
        LookAtMenu(menu);
    else if (QWidget *window = QApplication::activeModalWidget();
             window && window->isVisible() && !FOpen.contains(window))
        Look(window);
}

void TModalDriver::Look(QWidget *window)
{
    FSeen << Describe(window);
    FOpen << window;
    window->installEventFilter(this);
    if (std::none_of(FAllowed.begin(), FAllowed.end(),
                     [window](const QString &name) { return IsNamed(window, name); }))
        Answer(window);
}

// A window object that is shown again is a new question, however soon that is.
bool TModalDriver::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Hide)
        FOpen.removeAll(qobject_cast<QWidget *>(watched));
    return false;
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
    if (FAnswers.isEmpty() || !FAnswers.first().Menu)
        return; // a test may open a menu by itself
    const TMenuHandler handler = FAnswers.takeFirst().Menu;
    try {
        handler(menu);
    } catch (const std::exception &e) {
        ADD_FAILURE() << e.what();
    }
    menu->close();
}
