#include "uTestHome.h"

#include <QApplication>

#include <gtest/gtest.h>

namespace {

QtMessageHandler Previous = nullptr;

// The offscreen platform says for every window what it has no use for; that would bury the rest.
void Handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.startsWith("This plugin does not support"))
        Previous(type, context, text);
}

} // namespace

int main(int argc, char **argv)
{
    const TTestHome home;
    // Windows that pop up over somebody's work take the focus from each other and from them.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    Previous = qInstallMessageHandler(Handle);
    QApplication app(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false); // tests open and close many "last" windows
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
