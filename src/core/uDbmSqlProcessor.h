#pragma once

#include <QString>
#include <functional>

/// Cuts a script into statements line by line, with a changeable delimiter, as the server's
/// command-line client does. A line scanner and no SQL parser: the delimiter counts only at the end
/// of a line, a comment only at its start.
class TDbmSqlProcessor
{
public:
    using TProcessEvent = std::function<void(TDbmSqlProcessor *Sender, const QString &CommandText)>;
    using TProgressEvent = std::function<void(TDbmSqlProcessor *Sender, double Percent)>;

    /// The delimiter at the start of each run; ";" after creation.
    const QString &Delimiter() const { return FDelimiter; }
    void SetDelimiter(const QString &value) { FDelimiter = value; }

    /// What a listener raises leaves the run.
    void ExecuteFromText(const QString &value);
    /// Reads the file line by line; its tabs are kept. Raises EException when it cannot be read.
    void ExecuteFromFile(const QString &fileName);

    void SetOnProcess(TProcessEvent event) { FOnProcess = std::move(event); }
    void SetOnProgress(TProgressEvent event) { FOnProgress = std::move(event); }

private:
    void Start();
    void ProcessLine(QStringView line);
    void ProcessDelimiterCommand(QStringView line);
    void Flush();
    void FireProgress(double percent);

    QString FDelimiter = QStringLiteral(";");
    QString FBuffer;           // the statement being collected
    QString FCurrentDelimiter; // the one in force
    TProcessEvent FOnProcess;
    TProgressEvent FOnProgress;
};
