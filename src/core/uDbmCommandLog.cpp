#include "core/uDbmCommandLog.h"

#include "core/uDbmErrorNames.h"
#include "support/uFormat.h"
#include "support/uStringUtils.h"

#include <QDateTime>
#include <QLocale>

namespace {

/// The locale's short form without its zone, which the long forms have; some locales leave the
/// seconds out of it, and a log needs them.
QString TimeFormat(const QLocale &locale)
{
    QString format = locale.timeFormat(QLocale::ShortFormat);
    format.remove(u'B'); // a part of the day that Qt takes over from its data and cannot write
    const qsizetype minutes = format.indexOf(QStringLiteral("mm"));
    if (!format.contains(u's') && minutes > 0)
        format.insert(minutes + 2, format.mid(minutes - 1, 1) + QStringLiteral("ss"));
    return format;
}

} // namespace

TDbmCommandLogItem::TDbmCommandLogItem(const QString &query, const EDacMySqlError *e,
                                       double execTimeSec, int maxLogItemLength)
    : FQuery(TStringUtils::Compact(query.left(maxLogItemLength))), FDate(TDateTime::Now()),
      FExecTimeSec(execTimeSec), FIsError(e != nullptr)
{
    if (!e)
        return;
    FErrorCode = e->ErrorCode();
    FErrorName = TDbmErrorCodeParser::Parse(FErrorCode);
    FErrorMessage = e->ErrorMessage();
}

QString TDbmCommandLogItem::GetTimeDisplayString() const
{
    const QLocale locale;
    return locale.toString(FDate.ToQDateTime().time(), TimeFormat(locale));
}

QString TDbmCommandLogItem::GetDurationMSDisplayString() const
{
    return TFormat::Format("%.2n", {FExecTimeSec * 1000});
}

QString TDbmCommandLogItem::GetStatusDisplayString() const
{
    return FIsError ? TFormat::Format("%d (%s)", {FErrorCode, FErrorName}) : QStringLiteral("OK");
}

TDbmCommandLog::TDbmCommandLog(int maxLogItemLength, int maxLogItemCount)
    : FMaxLogItemLength(maxLogItemLength), FMaxLogItemCount(maxLogItemCount)
{}

TDbmCommandLogItem &TDbmCommandLog::Add(const QString &query, const EDacMySqlError *e,
                                        double execTimeSec)
{
    // One item goes at a time and only ahead of the new one: the list settles at one above the
    // limit.
    if (FMaxLogItemCount > 0 && Count() > FMaxLogItemCount)
        FList.pop_front();
    FList.push_back(std::make_unique<TDbmCommandLogItem>(query, e, execTimeSec, FMaxLogItemLength));
    return *FList.back();
}

void TDbmCommandLog::ForEach(const TItemAction &action) const
{
    for (const auto &item : FList)
        action(*item);
}
