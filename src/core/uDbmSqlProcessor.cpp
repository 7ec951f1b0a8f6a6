#include "core/uDbmSqlProcessor.h"

#include "core/uTextFileReader.h"
#include "support/uRegExUtils.h"
#include "support/uStringUtils.h"

namespace {

constexpr qsizetype LargestKeptBuffer = 1 << 20; // characters

const QString LineEnd = QStringLiteral("\r\n");

// White space is the blank and everything below it: what the server takes for white space, and not
// what Unicode calls so, which may stand in a string.
bool IsSpace(QChar c)
{
    return c <= u' ';
}

QStringView TrimLeft(QStringView text)
{
    while (!text.isEmpty() && IsSpace(text.front()))
        text = text.sliced(1);
    return text;
}

QStringView TrimRight(QStringView text)
{
    while (!text.isEmpty() && IsSpace(text.back()))
        text.chop(1);
    return text;
}

bool IsDelimiterCommand(QStringView line)
{
    // Nearly no line begins so: one character settles it before any case folding.
    return (line.front() == u'D' || line.front() == u'd') &&
           line.startsWith(QStringView(u"DELIMITER"), Qt::CaseInsensitive);
}

} // namespace

void TDbmSqlProcessor::ExecuteFromText(const QString &value)
{
    Start();
    const QStringList lines = TStringUtils::Lines(value);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        ProcessLine(lines[i]);
        FireProgress(static_cast<double>(i + 1) / static_cast<double>(lines.size()) * 100);
    }
    Flush();
}

void TDbmSqlProcessor::ExecuteFromFile(const QString &fileName)
{
    Start();
    TTextFileReader reader;
    reader.SetKeepTabs(true);
    reader.SetOnReadLine(
        [this](TTextFileReader *, const QString &line, bool &) { ProcessLine(line); });
    reader.SetOnProgress([this](TTextFileReader *, double percent) { FireProgress(percent); });
    reader.Execute(fileName);
    Flush();
}

void TDbmSqlProcessor::Start()
{
    FCurrentDelimiter = FDelimiter;
    FBuffer.clear();
}

void TDbmSqlProcessor::ProcessLine(QStringView line)
{
    const QStringView begin = TrimLeft(line);
    if (begin.isEmpty() || begin.front() == u'#' || begin.startsWith(QStringView(u"--")))
        return;
    if (IsDelimiterCommand(begin)) {
        ProcessDelimiterCommand(line);
        return;
    }

    const QStringView text = TrimRight(line);
    if (text.endsWith(FCurrentDelimiter, Qt::CaseInsensitive)) {
        FBuffer.append(text.chopped(FCurrentDelimiter.size()));
        Flush();
    } else {
        FBuffer.append(text);
    }
    FBuffer.append(LineEnd);
}

void TDbmSqlProcessor::ProcessDelimiterCommand(QStringView line)
{
    const auto match =
        TRegExUtils::Match(line.toString().toLower(), QStringLiteral("\\s*delimiter\\s+([\\S]*)"));
    if (match.hasMatch() && !match.captured(1).isEmpty())
        FCurrentDelimiter = match.captured(1);
}

void TDbmSqlProcessor::Flush()
{
    const QString commandText = TrimLeft(TrimRight(FBuffer)).toString();
    // Kept for the next statement, unless this one was out of the ordinary.
    if (FBuffer.capacity() > LargestKeptBuffer)
        FBuffer.clear();
    else
        FBuffer.resize(0);
    if (!commandText.isEmpty() && FOnProcess)
        FOnProcess(this, commandText);
}

void TDbmSqlProcessor::FireProgress(double percent)
{
    if (FOnProgress)
        FOnProgress(this, percent);
}
