#pragma once

#include <QIcon>
#include <QImage>
#include <QPalette>
#include <QString>

/// The program's own icons, one SVG file each, drawn anew for every size and for the palette: the
/// files are drawn in "currentColor" and five fixed colours, for each of which a dark palette
/// gets a brighter one.
class TIcons
{
public:
    /// Folder of the SVG files; forgets what was read from another one.
    static void SetFolder(const QString &folder);
    static QString Folder();

    /// By the file's name without ".svg". A missing or broken file gives a dashed square and, the
    /// first time, a warning.
    static QIcon Icon(const QString &name);
    /// What the icon looks like with this palette, in pixels.
    static QImage Render(const QString &name, const QSize &size, const QPalette &palette,
                         QIcon::Mode mode = QIcon::Normal);
    /// The colours that a file may use besides "currentColor"; others are drawn as they are.
    static QStringList ThemedColors();
};
