#pragma once

#include <QByteArray>
#include <QString>

enum TTextEncoding { teUtf8, teUtf16LE, teUtf16BE, teLegacy, teUndecodable };
enum TLineEnds { leLf, leCrLf, leCr };

/// How a text lies in a file.
struct TTextForm
{
    TTextEncoding Encoding = teUtf8;
    bool Mark = true;            // a byte order mark stands in front; new files have one
    TLineEnds LineEnds = leCrLf; // of the lines that the user adds; existing line ends are kept
    bool operator==(const TTextForm &) const = default;
};

/// Bytes to text and back. Text without a mark is UTF-8 when its bytes are valid UTF-8, else it is
/// read in the legacy code page; UTF-16 is known by its mark only.
class TTextCoding
{
public:
    /// The code page for bytes that are no UTF-8, by its common name ("windows-1251"); empty is the
    /// locale's. Raises EException for a name that the system's converter does not know. Set at
    /// start-up, before there are other threads.
    static void SetLegacyCodePage(const QString &name);
    /// The name set last, or the codeset of the locale.
    static QString LegacyCodePage();

    /// Detects the form. A text that cannot be decoded comes with replacement characters and
    /// `teUndecodable`: it must not be written back.
    static QString Decode(const QByteArray &bytes, TTextForm &form);
    /// In the legacy code page, whatever the bytes look like. `ok` is false when some bytes have no
    /// meaning in it; these come as replacement characters.
    static QString DecodeLegacy(const QByteArray &bytes, bool &ok);
    /// As UTF-8; a mark in front stays a character.
    static QString DecodeUtf8(const QByteArray &bytes, bool &ok);
    /// Raises EException when a character has no place in the form's encoding or the form is
    /// undecodable.
    static QByteArray Encode(const QString &text, const TTextForm &form);
    static bool IsValidUtf8(const QByteArray &bytes);
    /// The line end that stands in the text first; `def` for a text of one line.
    static TLineEnds DetectLineEnds(const QString &text, TLineEnds def);
};
