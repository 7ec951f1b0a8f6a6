#include "widgets/uIcons.h"

#include "widgets/uStylePalette.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace {

struct TThemedColor
{
    const char *InFile;
    const char *Light;
    const char *Dark;
};

const TThemedColor Themed[] = {
    {"#2f6fd0", "#1f68c9", "#6fb0ff"}, // blue
    {"#2e8b57", "#1f8a4c", "#6fd39a"}, // green
    {"#c8403a", "#c43a34", "#ff8a80"}, // red
    {"#c77d1a", "#bd7210", "#f2b85c"}, // amber
    {"#7b52c0", "#7348bd", "#bd9cf5"}, // violet
};

const char *const MissingSvg =
    "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 16 16\">"
    "<g fill=\"none\" stroke=\"currentColor\" stroke-width=\"1.2\">"
    "<rect x=\"2.5\" y=\"2.5\" width=\"11\" height=\"11\" rx=\"2\" stroke-dasharray=\"2 1.6\"/>"
    "<path d=\"M5.5 8h5\"/></g></svg>";

constexpr double DisabledOpacity = 0.4;

struct TStore
{
    QString Folder;
    QHash<QString, QByteArray> Svg;
};

TStore &Store()
{
    static TStore store;
    return store;
}

QByteArray ReadSvg(const QString &name)
{
    QFile file(Store().Folder + '/' + name + ".svg");
    if (file.open(QIODevice::ReadOnly)) {
        const QByteArray svg = file.readAll();
        if (QSvgRenderer(svg).isValid())
            return svg;
    }
    qWarning("No icon \"%s\" in \"%s\".", qUtf8Printable(name), qUtf8Printable(Store().Folder));
    return MissingSvg;
}

QByteArray Svg(const QString &name)
{
    auto found = Store().Svg.find(name);
    if (found == Store().Svg.end())
        found = Store().Svg.insert(name, ReadSvg(name));
    return *found;
}

QByteArray Recolored(QByteArray svg, const QPalette &palette, QIcon::Mode mode)
{
    const bool dark = TAppPalette::ThemeOf(palette) == atDark;
    const bool selected = mode == QIcon::Selected;
    const QByteArray text =
        palette.color(selected ? QPalette::HighlightedText : QPalette::WindowText).name().toUtf8();
    // On the ground of a selection only its own text colour is sure to be seen.
    for (const TThemedColor &color : Themed)
        svg.replace(color.InFile, selected ? text.constData() : dark ? color.Dark : color.Light);
    return svg.replace("currentColor", text);
}

/// Draws an icon at the size asked for, never scaling a picture.
class TIconEngine : public QIconEngine
{
public:
    explicit TIconEngine(const QString &name) : FName(name) { Svg(name); }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const double ratio = painter->device()->devicePixelRatio();
        QPixmap drawn = pixmap(rect.size() * ratio, mode, state);
        drawn.setDevicePixelRatio(ratio);
        painter->drawPixmap(rect, drawn);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        const QPalette palette = QGuiApplication::palette();
        const QString key = QStringLiteral("icon %1 %2 %3 %4 %5 %6")
                                .arg(Store().Folder, FName)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(int(mode))
                                .arg(palette.cacheKey());
        QPixmap drawn;
        if (!QPixmapCache::find(key, &drawn)) {
            drawn = QPixmap::fromImage(TIcons::Render(FName, size, palette, mode));
            QPixmapCache::insert(key, drawn);
        }
        return drawn;
    }

    QIconEngine *clone() const override { return new TIconEngine(*this); }
    QString key() const override { return QStringLiteral("korvane"); }
    QString iconName() override { return FName; }
    bool isNull() override { return false; }

private:
    QString FName;
};

} // namespace

void TIcons::SetFolder(const QString &folder)
{
    Store() = {folder, {}};
}

QString TIcons::Folder()
{
    return Store().Folder;
}

QIcon TIcons::Icon(const QString &name)
{
    return QIcon(new TIconEngine(name));
}

QImage TIcons::Render(const QString &name, const QSize &size, const QPalette &palette,
                      QIcon::Mode mode)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (size.isEmpty())
        return image;
    QSvgRenderer renderer(Recolored(Svg(name), palette, mode));
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPainter painter(&image);
    if (mode == QIcon::Disabled)
        painter.setOpacity(DisabledOpacity);
    renderer.render(&painter);
    return image;
}

QStringList TIcons::ThemedColors()
{
    QStringList colors;
    for (const TThemedColor &color : Themed)
        colors.append(QString::fromLatin1(color.InFile));
    return colors;
}
