#include "sql/uDbmRoutineGuard.h"

#include "core/uDbmSqlProcessor.h"
#include "support/uException.h"
#include "support/uFormat.h"
#include "support/uRegExUtils.h"

#include <algorithm>

namespace {

constexpr int NoSuchRoutine = 1305; // ER_SP_DOES_NOT_EXIST of the server's error list

const QString Name = "(?:(`(?:[^`]|``)+`|[\\w$]+)\\s*\\.\\s*)?(`(?:[^`]|``)+`|[\\w$]+)";

QString Bare(const QString &name)
{
    return name.startsWith(u'`') ? name.mid(1, name.size() - 2).replace("``", "`") : name;
}

bool IsSame(const QString &left, const QString &right)
{
    return left.compare(right, Qt::CaseInsensitive) == 0;
}

} // namespace

TDbmRoutineGuard::TDbmRoutineGuard(TDbmRoutineCommands &commands, const QString &script)
    : FCommands(commands)
{
    // Nearly all scripts end here, the large ones too.
    if (!TRegExUtils::Match(script, "\\bDROP\\s+(PROCEDURE|FUNCTION)\\b",
                            QRegularExpression::CaseInsensitiveOption)
             .hasMatch())
        return;
    Watch(script);
    for (TRoutine &routine : FRoutines)
        Read(routine);
}

void TDbmRoutineGuard::Watch(const QString &script)
{
    const QString drop = "^\\s*DROP\\s+(PROCEDURE|FUNCTION)\\s+(?:IF\\s+EXISTS\\s+)?" + Name;
    const QString create = TDbmRoutineFormatters::CreatePattern() + Name;
    QList<TRoutine> dropped;
    const auto parse = [](const QString &statement, const QString &pattern, TRoutine &routine) {
        const auto match =
            TRegExUtils::Match(statement, pattern, QRegularExpression::CaseInsensitiveOption);
        routine.Type = IsSame(match.captured(1), "FUNCTION") ? rtFunction : rtProcedure;
        routine.Database = Bare(match.captured(2));
        routine.Name = Bare(match.captured(3));
        return match.hasMatch();
    };
    TDbmSqlProcessor processor;
    processor.SetOnProcess([&](TDbmSqlProcessor *, const QString &statement) {
        TRoutine routine{};
        if (parse(statement, drop, routine))
            dropped.append(routine);
        else if (parse(statement, create, routine) &&
                 std::any_of(dropped.begin(), dropped.end(), [&](const TRoutine &other) {
                     return other.Type == routine.Type && other.Database == routine.Database &&
                            IsSame(other.Name, routine.Name);
                 }))
            FRoutines.append(routine);
    });
    processor.ExecuteFromText(script);
}

void TDbmRoutineGuard::Read(TRoutine &routine)
{
    try {
        if (routine.Database.isEmpty())
            routine.Database = FCommands.ExecuteSelectDatabase();
        routine.Text = FCommands.ExecuteSelectText(routine.Database, routine.Name, routine.Type);
    } catch (const EDacMySqlError &e) {
        if (e.ErrorCode() != NoSuchRoutine)
            routine.Failure = e.Message();
    } catch (const EException &e) {
        routine.Failure = e.Message();
    }
}

QString TDbmRoutineGuard::PutBack()
{
    QString lines;
    for (const TRoutine &routine : FRoutines)
        lines += PutBack(routine);
    return lines;
}

QString TDbmRoutineGuard::PutBack(const TRoutine &routine)
{
    QString failure = routine.Failure;
    try {
        if (routine.Text.Statement.isEmpty() && failure.isEmpty())
            return {};
        if (FCommands.ExecuteExists(routine.Database, routine.Name, routine.Type))
            return {};
        if (failure.isEmpty())
            FCommands.ExecuteRestore(routine.Text);
    } catch (const EException &e) {
        failure = e.Message();
    }
    if (failure.isEmpty())
        return TFormat::Format("\r\nThe old routine \"%s\" was put back.", {routine.Name});
    return TFormat::Format("\r\nThe old routine \"%s\" could not be put back: %s\r\n%s",
                           {routine.Name, failure, routine.Text.Statement});
}
