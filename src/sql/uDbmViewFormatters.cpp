#include "sql/uDbmViewFormatters.h"

#include "sql/uDatasetUtils.h"
#include "sql/uDbmOtherUtils.h"
#include "sql/uDbmPathUtils.h"
#include "sql/uDbmSqlStringFormatter.h"
#include "support/uFormat.h"
#include "support/uRegExUtils.h"

namespace {

bool Is(const QString &text, QStringView word)
{
    return text.compare(word, Qt::CaseInsensitive) == 0;
}

TDbmViewCheckOption ParseCheckOption(const QString &text)
{
    if (Is(text, u"CASCADED"))
        return vcoCascaded;
    return Is(text, u"LOCAL") ? vcoLocal : vcoNone;
}

TDbmViewSecurityType ParseSecurityType(const QString &text)
{
    if (Is(text, u"DEFINER"))
        return vsDefiner;
    return Is(text, u"INVOKER") ? vsInvoker : vsUnknown;
}

} // namespace

QString TDbmViewFormatters::FormatSelect(const QString &database) const
{
    return TFormat::Format("SELECT * FROM information_schema.views WHERE table_schema = '%s'",
                           {TDbmSqlStringFormatter::Format(database)});
}

QString TDbmViewFormatters::FormatSelectRow(const QString &database, const QString &view) const
{
    return TFormat::Format(
        "SELECT * FROM information_schema.views WHERE table_schema = '%s' AND table_name = '%s'",
        {TDbmSqlStringFormatter::Format(database), TDbmSqlStringFormatter::Format(view)});
}

TDbmViewEntity TDbmViewFormatters::ParseSelectRow(const TDataSet &row) const
{
    const auto text = [&](const char *name) { return TDatasetUtils::AsString(row, name, {}); };
    TDbmViewEntity entity;
    entity.ViewName = row.FieldByName("table_name").AsString();
    entity.Definition = row.FieldByName("view_definition").AsString();
    entity.Definer = row.FieldByName("definer").AsString();
    entity.CheckOption = ParseCheckOption(text("check_option"));
    entity.SecurityType = ParseSecurityType(text("security_type"));
    entity.Info.Updatable = Is(text("is_updatable"), u"YES");
    entity.Info.Charset = text("character_set_client");
    entity.Info.Collation = text("collation_connection");
    entity.Algorithm = text("algorithm");
    return entity;
}

QString TDbmViewFormatters::FormatSelectDDL(const QString &database, const QString &view) const
{
    return TFormat::Format("SHOW CREATE VIEW %s", {TDbmPathUtils::FormatDbObject(database, view)});
}

QString TDbmViewFormatters::ParseSelectAlgorithm(const TDataSet &row) const
{
    return TRegExUtils::Match(TDatasetUtils::AsString(row, "Create View", {}),
                              "^CREATE ALGORITHM=(\\w+) ")
        .captured(1);
}

QString TDbmViewFormatters::FormatDefinition(const QString &definition,
                                             const QString &database) const
{
    return QString(definition).remove(u'`' + database + "`.");
}

QString TDbmViewFormatters::FormatCreate(const QString &database, const TDbmViewEntity &entity,
                                         bool stripDatabase, bool withDefiner, bool orReplace,
                                         const QString &definitionDatabase) const
{
    QStringList lines{orReplace ? "CREATE OR REPLACE" : "CREATE"};
    if (!entity.Algorithm.isEmpty() && !Is(entity.Algorithm, u"UNDEFINED"))
        lines.append("  ALGORITHM = " + entity.Algorithm);
    if (withDefiner && !entity.Definer.isEmpty())
        lines.append("  DEFINER = " + TDbmOtherUtils::FormatUser(entity.Definer));
    if (entity.SecurityType == vsDefiner)
        lines.append("  SQL SECURITY DEFINER");
    else if (entity.SecurityType == vsInvoker)
        lines.append("  SQL SECURITY INVOKER");
    lines.append("  VIEW " + TDbmPathUtils::FormatDbObject(database, entity.ViewName));
    lines.append("AS");
    lines.append(stripDatabase ? FormatDefinition(entity.Definition, definitionDatabase)
                               : entity.Definition);
    if (entity.CheckOption == vcoCascaded)
        lines.append("WITH CASCADED CHECK OPTION");
    else if (entity.CheckOption == vcoLocal)
        lines.append("WITH LOCAL CHECK OPTION");
    return lines.join("\r\n").trimmed();
}

QString TDbmViewFormatters::FormatDelete(const QString &database, const QString &view,
                                         bool ifExists) const
{
    return QString("DROP VIEW ") + (ifExists ? "IF EXISTS " : "") +
           TDbmPathUtils::FormatDbObject(database, view);
}

QString TDbmViewFormatters::FormatRename(const QString &database, const QString &oldName,
                                         const QString &newName) const
{
    return TFormat::Format("RENAME TABLE %s TO %s",
                           {TDbmPathUtils::FormatDbObject(database, oldName),
                            TDbmPathUtils::FormatDbObject(database, newName)});
}
