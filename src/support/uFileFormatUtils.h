#pragma once

#include <QByteArray>

/// The image formats that can be shown, told by the first and last bytes.
class TFileFormatUtils
{
public:
    static bool IsGif(const QByteArray &bytes) { return bytes.startsWith("GIF8"); }
    static bool IsPng(const QByteArray &bytes) { return bytes.startsWith("\x89PNG\r\n\x1a\n"); }
    /// Whole to the end: what was cut off is no picture.
    static bool IsJpeg(const QByteArray &bytes)
    {
        return bytes.size() >= 4 && bytes.startsWith("\xff\xd8") && bytes.endsWith("\xff\xd9");
    }
};
