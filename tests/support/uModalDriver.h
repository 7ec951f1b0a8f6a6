#pragma once

#include <QList>
#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <functional>

class QMenu;

/// Answers modal windows and context menus while the call that opened them waits. Tell it before
/// the act what will open, in order of opening; each Expect... answers one window. A window that
/// nobody expected is a failure and is closed; so is an answer that was not called for when the
/// driver is destroyed.
class TModalDriver : public QObject
{
public:
    using THandler = std::function<void(QWidget *window)>;
    using TMenuHandler = std::function<void(QMenu *menu)>;

    TModalDriver();
    ~TModalDriver() override;

    /// The next modal window, whichever it is. The handler runs inside the window's own loop and
    /// has to make it close, as a user would.
    void Expect(THandler handler);
    /// The same; the window's objectName, class name or title must be this name.
    void Expect(const QString &name, THandler handler);
    /// A message box whose text contains this; it is answered with the button.
    void ExpectMessage(const QString &text, QMessageBox::StandardButton button = QMessageBox::Ok);
    /// A file dialog; it is answered with the path, or rejected when the path is empty.
    void ExpectFile(const QString &path);
    /// A menu opened by exec(): the handler, or the entry with this caption (without "&") in it.
    void ExpectMenu(TMenuHandler handler);
    void ExpectMenu(const QString &caption);
    /// Modal windows with this objectName, class name or title may come and go by themselves.
    void Allow(const QString &name);

    /// Windows seen so far, each described by class, name, title and the texts in it.
    QStringList Seen() const { return FSeen; }
    /// Answers not called for yet.
    int Pending() const { return int(FAnswers.size()); }

    /// Class, name, title and texts of a window in one line, for messages.
    static QString Describe(const QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct TAnswer
    {
        QString Name;
        THandler Window;
        TMenuHandler Menu;
    };

    void Arm();
    void Poll();
    void Look(QWidget *window);
    void LookAtMenu(QMenu *menu);
    void Answer(QWidget *window);

    QList<TAnswer> FAnswers;
    QList<QPointer<QWidget>> FOpen; // looked at and not closed since
    QStringList FAllowed;
    QStringList FSeen;
};
