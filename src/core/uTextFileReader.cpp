#include "core/uTextFileReader.h"

#include "support/uException.h"
#include "support/uTextCoding.h"

#include <QFile>
#include <cstring>

namespace {

constexpr uchar FirstTextByte = 14; // what lies below ends lines or is dropped
constexpr char Utf8Mark[] = "\xEF\xBB\xBF";

[[noreturn]] void RaiseFileError(const QString &doing, const QFile &file)
{
    throw EException(QStringLiteral("Cannot %1 file \"%2\": %3.")
                         .arg(doing, file.fileName(), file.errorString()));
}

/// Whether any byte lies below FirstTextByte. Eight bytes at a time, since every byte of a script
/// comes by here: the subtraction borrows into the top bit of a byte that is smaller.
bool HasControls(QByteArrayView bytes)
{
    constexpr quint64 Ones = 0x0101010101010101;
    const char *at = bytes.data();
    const char *end = at + bytes.size();
    for (; end - at >= 8; at += 8) {
        quint64 word;
        std::memcpy(&word, at, 8);
        if (((word - Ones * FirstTextByte) & ~word & (Ones * 0x80)) != 0)
            return true;
    }
    for (; at < end; ++at)
        if (static_cast<uchar>(*at) < FirstTextByte)
            return true;
    return false;
}

} // namespace

// Lines are decoded one by one, and a mark counts only at the head of the file.
TTextFileReader::TTextFileReader()
    : FDecoder(QStringConverter::Utf8,
               QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom)
{}

void TTextFileReader::Execute(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        RaiseFileError("open", file);
    Start(file.size());

    QByteArray block(FBufferSize, Qt::Uninitialized);
    while (!FIsBreak) {
        const qint64 read = file.read(block.data(), block.size());
        if (read < 0)
            RaiseFileError("read", file);
        if (read == 0)
            break;
        ProcessBlock(QByteArrayView(block.constData(), read));
    }
    Finish();
}

void TTextFileReader::Start(qint64 size)
{
    FIsBreak = false;
    FFirstLine = true;
    FOffs = 0;
    FSize = size;
    FEncodeToUTF8 = false;
    FPending.clear();
}

void TTextFileReader::ProcessBlock(QByteArrayView block)
{
    while (!block.isEmpty() && !FIsBreak) {
        const void *found = std::memchr(block.data(), '\n', static_cast<size_t>(block.size()));
        if (!found) {
            FPending.append(block);
            FOffs += block.size();
            return;
        }
        const qsizetype length = static_cast<const char *>(found) - block.data();
        FOffs += length + 1;
        EndLine(JoinPending(block.first(length)));
        FPending.resize(0);
        block = block.sliced(length + 1);
    }
}

void TTextFileReader::Finish()
{
    if (!FIsBreak && !WithoutControls(FPending).isEmpty())
        EndLine(FPending);
    else if (FFirstLine)
        FireProgress();
}

QByteArrayView TTextFileReader::JoinPending(QByteArrayView lineEnd)
{
    if (FPending.isEmpty())
        return lineEnd;
    FPending.append(lineEnd);
    return FPending;
}

void TTextFileReader::EndLine(QByteArrayView bytes)
{
    QByteArrayView text = WithoutControls(bytes);
    if (FFirstLine && text.startsWith(Utf8Mark)) {
        text = text.sliced(sizeof Utf8Mark - 1);
        FEncodeToUTF8 = true;
    }
    FFirstLine = false;
    Decode(text);
    if (FOnReadLine)
        FOnReadLine(this, FLine, FIsBreak);
    FireProgress();
}

QByteArrayView TTextFileReader::WithoutControls(QByteArrayView bytes)
{
    if (bytes.endsWith('\r'))
        bytes.chop(1);
    if (!HasControls(bytes))
        return bytes;
    FCleaned.resize(0);
    FCleaned.reserve(bytes.size());
    for (const char c : bytes)
        if (static_cast<uchar>(c) >= FirstTextByte || (FKeepTabs && c == '\t'))
            FCleaned.append(c);
    return FCleaned;
}

void TTextFileReader::Decode(QByteArrayView bytes)
{
    FDecoder.resetState();
    FLine.resize(FDecoder.requiredSpace(bytes.size()));
    const QChar *end = FDecoder.appendToBuffer(FLine.data(), bytes);
    FLine.truncate(end - FLine.constData());
    if (!FDecoder.hasError() || FEncodeToUTF8)
        return;
    bool ok = false; // bytes of no known text come as replacement characters, and the run goes on
    FLine = TTextCoding::DecodeLegacy(bytes.toByteArray(), ok);
}

void TTextFileReader::FireProgress()
{
    if (FOnProgress)
        FOnProgress(this,
                    FSize == 0 ? 0 : static_cast<double>(FOffs) / static_cast<double>(FSize) * 100);
}
