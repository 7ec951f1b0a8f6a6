#include "jobs/uDbmDumpDataUtils.h"

#include "jobs/uDbmDumpNames.h"
#include "sql/uDbmPathUtils.h"

void TDbmDumpDataUtils::DumpData(bool ignore, bool delayed, bool replace,
                                 const TDbmTableRows::TConsumer &consumer) const
{
    TDbmTableRows rows(*FManager, FSourceDatabaseName, FSourceTableName);
    rows.FTargetTable = TDbmPathUtils::FormatDbObject(
        FExcludeDatabaseName ? QString() : TDbmDumpNames::Escaped(FTargetDatabaseName),
        TDbmDumpNames::Escaped(FTargetTableName));
    rows.FStatementCharset = FStatementCharset;
    rows.FIgnore = ignore;
    rows.FDelayed = delayed;
    rows.FReplace = replace;
    rows.FStopRequested = FStopRequested;
    rows.Run(consumer);
}
