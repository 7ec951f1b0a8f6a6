#include "widgets/uStyle.h"
#include "widgets/uStyleSystem.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <set>

namespace {

constexpr double ReadableText = 4.5;
constexpr double VisibleLine = 1.3; // a hairline is found by its neighbours, not read

class TStyleOfTheme : public testing::TestWithParam<TAppTheme>
{
protected:
    QColor Color(QPalette::ColorRole role) const { return Palette.color(role); }

    const QPalette Palette = TAppPalette::Palette(GetParam());
};

TEST_P(TStyleOfTheme, HasReadableText)
{
    const std::pair<QPalette::ColorRole, QPalette::ColorRole> pairs[] = {
        {QPalette::WindowText, QPalette::Window},
        {QPalette::Text, QPalette::Base},
        {QPalette::Text, QPalette::AlternateBase},
        {QPalette::ButtonText, QPalette::Button},
        {QPalette::HighlightedText, QPalette::Highlight},
        {QPalette::ToolTipText, QPalette::ToolTipBase},
        {QPalette::PlaceholderText, QPalette::Base},
        {QPalette::Link, QPalette::Base},
        {QPalette::LinkVisited, QPalette::Base},
    };
    for (const auto &[text, ground] : pairs)
        EXPECT_GE(TAppPalette::Contrast(Color(text), Color(ground)), ReadableText)
            << text << " on " << ground;
    EXPECT_EQ(TAppPalette::ThemeOf(Palette), GetParam());
}

TEST_P(TStyleOfTheme, HasReadableColoursOfItsOwn)
{
    for (QPalette::ColorRole ground : {QPalette::Base, QPalette::AlternateBase}) {
        std::set<QRgb> kinds;
        for (TAppFieldKind kind :
             {TAppFieldKind::fkString, TAppFieldKind::fkBoolean, TAppFieldKind::fkNumber,
              TAppFieldKind::fkDate, TAppFieldKind::fkOther}) {
            const QColor color = TAppFieldTypeColors::Color(kind, Palette);
            EXPECT_GE(TAppPalette::Contrast(color, Color(ground)), ReadableText) << int(kind);
            kinds.insert(color.rgb());
        }
        EXPECT_EQ(kinds.size(), 5u) << "one colour each";
        EXPECT_GE(TAppPalette::Contrast(TAppPalette::ErrorText(Palette), Color(ground)),
                  ReadableText);
    }
    for (QPalette::ColorRole ground : {QPalette::Base, QPalette::Window})
        EXPECT_GE(TAppPalette::Contrast(TAppPalette::Line(Palette), Color(ground)), VisibleLine);
}

INSTANTIATE_TEST_SUITE_P(All, TStyleOfTheme, testing::Values(atLight, atDark),
                         [](const auto &info) { return info.param == atDark ? "Dark" : "Light"; });

TEST(TStyleTest, KeepsAThemeThatWasAskedFor)
{
    const QPalette before = QApplication::palette();
    TAppStyle::Apply(*qApp);
    TAppStyle::SetTheme(atDark);
    EXPECT_EQ(TAppStyle::Theme(), atDark);
    QWidget window;
    QEvent changed(QEvent::ThemeChange);
    QApplication::sendEvent(&window, &changed);
    EXPECT_EQ(TAppStyle::Theme(), atDark);

    TAppStyle::Apply(*qApp);
    QApplication::sendEvent(&window, &changed);
    EXPECT_EQ(TAppStyle::Theme(), atLight) << "the test's platform is a light one";
    QApplication::setStyle("Fusion");
    QApplication::setPalette(before);
}

TEST(TStyleTest, ReadsTheDesktopsSettings)
{
    const std::pair<const char *, TAppTheme> cases[] = {
        {"[Settings]\ngtk-application-prefer-dark-theme=1\n", atDark},
        {"[Settings]\ngtk-application-prefer-dark-theme=true\n", atDark},
        {"[Settings]\ngtk-application-prefer-dark-theme=0\ngtk-theme-name=Adwaita\n", atLight},
        {"[Settings]\ngtk-theme-name=Adwaita-dark\n", atDark},
        {"no settings at all", atLight},
    };
    QTemporaryDir folder;
    const QString name = folder.filePath("settings.ini");
    EXPECT_EQ(TStyleSystem::ThemeOfGtkSettings(name), atLight) << "no file";
    for (const auto &[text, theme] : cases) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        EXPECT_EQ(TStyleSystem::ThemeOfGtkSettings(name), theme) << text;
    }
    EXPECT_EQ(TStyleSystem::Theme(TAppPalette::Palette(atDark)), atDark) << "the platform knows";
}

} // namespace
