#include "shell/uMessaging.h"
#include "shell/uAppMessages.h"

#include <QStringList>
#include <gtest/gtest.h>

namespace {

class TBusTest : public ::testing::Test
{
protected:
    ~TBusTest() override
    {
        TMessenger::Unregister(&First);
        TMessenger::Unregister(&Second);
    }
    void ListenToRedraw(QObject &recipient, const QString &name)
    {
        TMessenger::Register<TRedrawUIMessage>(
            &recipient, [this, name](const TRedrawUIMessage &) { Heard += name; });
    }

    QObject First, Second;
    QStringList Heard;
};

TEST_F(TBusTest, ARecipientMayUnregisterDuringTheDispatch)
{
    TMessenger::Register<TRedrawUIMessage>(&First, [this](const TRedrawUIMessage &) {
        Heard += "leaves";
        TMessenger::Unregister(&First);
        ListenToRedraw(First, "late");
    });
    ListenToRedraw(Second, "stays");
    TAppMessages::SendRedrawUI();
    EXPECT_EQ(Heard, (QStringList{"leaves", "stays"}));
}

TEST_F(TBusTest, ARecipientThatDiedIsSkipped)
{
    auto third = std::make_unique<QObject>();
    ListenToRedraw(*third, "dead");
    TMessenger::Register<TRedrawUIMessage>(&First,
                                           [&](const TRedrawUIMessage &) { third.reset(); });
    auto fourth = std::make_unique<QObject>();
    ListenToRedraw(*fourth, "alive");
    TAppMessages::SendRedrawUI();
    TAppMessages::SendRedrawUI();
    EXPECT_EQ(Heard, (QStringList{"dead", "alive", "alive"}));
}

} // namespace
