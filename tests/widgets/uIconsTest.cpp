#include "widgets/uIcons.h"
#include "widgets/uStylePalette.h"

#include <QApplication>
#include <QDir>
#include <QHash>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString Images = QStringLiteral(KORVANE_SOURCE_DIR "/data/images");

QStringList Warnings;

void Note(QtMsgType, const QMessageLogContext &, const QString &text)
{
    Warnings << text;
}

class TIconsTest : public testing::Test
{
protected:
    TIconsTest()
    {
        Warnings.clear();
        Previous = qInstallMessageHandler(Note);
        TIcons::SetFolder(Images);
    }
    ~TIconsTest() override { qInstallMessageHandler(Previous); }

    static QStringList Names()
    {
        QStringList names;
        for (const QString &file : QDir(Images).entryList({"*.svg"}))
            names << file.chopped(4);
        return names;
    }

    /// Pixels that can be told from the ground, in percent.
    static double Visible(const QImage &image, const QColor &ground)
    {
        QImage seen(image.size(), QImage::Format_RGB32);
        seen.fill(ground);
        QPainter(&seen).drawImage(0, 0, image);
        int visible = 0;
        for (int y = 0; y < seen.height(); ++y)
            for (int x = 0; x < seen.width(); ++x)
                visible += TAppPalette::Contrast(seen.pixelColor(x, y), ground) >= 2;
        return 100.0 * visible / (seen.width() * seen.height());
    }

    static QImage Render(const QString &name, TAppTheme theme, int size = 16,
                         QIcon::Mode mode = QIcon::Normal)
    {
        return TIcons::Render(name, {size, size}, TAppPalette::Palette(theme), mode);
    }

    QtMessageHandler Previous;
};

TEST_F(TIconsTest, AreLegibleOnBothPalettesAndOnASelectionAndDiffer)
{
    ASSERT_FALSE(Names().isEmpty());
    QHash<QByteArray, QString> seen;
    for (const QString &name : Names()) {
        for (TAppTheme theme : {atLight, atDark}) {
            const QPalette palette = TAppPalette::Palette(theme);
            for (int size : {16, 40})
                EXPECT_GE(Visible(Render(name, theme, size), palette.color(QPalette::Window)), 3)
                    << qPrintable(name) << " at " << size;
            EXPECT_GE(Visible(Render(name, theme, 16, QIcon::Selected),
                              palette.color(QPalette::Highlight)),
                      3)
                << qPrintable(name) << " selected";
        }
        const QImage drawn = Render(name, atLight);
        EXPECT_NE(drawn, Render("", atLight)) << qPrintable(name) << " is not an SVG";
        EXPECT_NE(Render(name, atLight, 16, QIcon::Disabled), drawn) << qPrintable(name);
        const QByteArray pixels(reinterpret_cast<const char *>(drawn.constBits()),
                                drawn.sizeInBytes());
        EXPECT_FALSE(seen.contains(pixels)) << qPrintable(name + " looks like " + seen[pixels]);
        seen.insert(pixels, name);
    }
}

TEST_F(TIconsTest, FollowThePaletteAndTheScale)
{
    const QPalette before = QApplication::palette();
    const QIcon icon = TIcons::Icon("execute");
    QApplication::setPalette(TAppPalette::Palette(atLight));
    const QImage light = icon.pixmap(QSize(16, 16), 1.0).toImage();
    QApplication::setPalette(TAppPalette::Palette(atDark));
    EXPECT_NE(icon.pixmap(QSize(16, 16), 1.0).toImage(), light) << "the same icon, drawn anew";
    QApplication::setPalette(before);

    const QPixmap large = icon.pixmap(QSize(16, 16), 2.5);
    EXPECT_EQ(large.size(), QSize(40, 40)) << "drawn for the scale, not stretched";
    EXPECT_EQ(large.deviceIndependentSize(), QSizeF(16, 16));
    EXPECT_TRUE(icon.pixmap(QSize(0, 0)).isNull());
}

TEST_F(TIconsTest, StandInForAMissingFileWithOneWarning)
{
    QTemporaryDir folder;
    QFile broken(folder.filePath("broken.svg"));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("<svg");
    broken.close();
    TIcons::SetFolder(folder.path());
    for (const QString &name : {QString("no-such-icon"), QString("broken")}) {
        Warnings.clear();
        EXPECT_FALSE(TIcons::Icon(name).isNull());
        const QImage drawn = Render(name, atLight);
        EXPECT_GE(Visible(drawn, TAppPalette::Palette(atLight).color(QPalette::Window)), 3);
        TIcons::Icon(name).pixmap(QSize(16, 16));
        EXPECT_EQ(Warnings.filter("\"" + name + "\"").size(), 1) << qPrintable(Warnings.join('\n'));
    }
}

} // namespace
