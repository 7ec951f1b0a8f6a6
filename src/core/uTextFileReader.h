#pragma once

#include <QByteArray>
#include <QString>
#include <QStringDecoder>
#include <functional>

/// Reports the lines of a text file of any size. Memory is bounded by one block and the longest
/// line. Lines end with LF; bytes below 14 are dropped.
class TTextFileReader
{
public:
    /// `Line` is valid during the call. Setting `IsBreak` stops the read.
    using TReadLineEvent =
        std::function<void(TTextFileReader *Sender, const QString &Line, bool &IsBreak)>;
    using TProgressEvent = std::function<void(TTextFileReader *Sender, double Percent)>;

    TTextFileReader();

    /// A file that begins with a UTF-8 mark is UTF-8 throughout. Without one, each line is UTF-8
    /// when its bytes are valid, else text in the legacy code page. Raises EException with the
    /// path when the file cannot be opened or read.
    void Execute(const QString &fileName);

    /// Whether tabs are handed on. Off by default; scripts need it, since dumps of other tools have
    /// raw tabs inside their strings.
    void SetKeepTabs(bool value) { FKeepTabs = value; }
    bool KeepTabs() const { return FKeepTabs; }
    int BufferSize() const { return FBufferSize; } // bytes
    void SetBufferSize(int value) { FBufferSize = value; }

    void SetOnReadLine(TReadLineEvent event) { FOnReadLine = std::move(event); }
    void SetOnProgress(TProgressEvent event) { FOnProgress = std::move(event); }

private:
    void Start(qint64 size);
    void ProcessBlock(QByteArrayView block);
    void Finish();
    QByteArrayView JoinPending(QByteArrayView lineEnd);
    void EndLine(QByteArrayView bytes);
    QByteArrayView WithoutControls(QByteArrayView bytes);
    void Decode(QByteArrayView bytes);
    void FireProgress();

    int FBufferSize = 131072;
    bool FIsBreak = false;
    bool FFirstLine = true;
    qint64 FOffs = 0;
    qint64 FSize = 0;
    bool FEncodeToUTF8 = false;
    bool FKeepTabs = false;
    QByteArray FPending; // the part of a line that came with earlier blocks
    QByteArray FCleaned;
    QString FLine;
    QStringDecoder FDecoder;
    TReadLineEvent FOnReadLine;
    TProgressEvent FOnProgress;
};
