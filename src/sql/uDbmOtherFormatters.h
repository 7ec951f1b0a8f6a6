#pragma once

#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// The short control statements.
class TDbmOtherFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmOtherFormatters(const TDbmServerFeatures *features) : TDbmChildFormatters(features)
    {}

    QString FormatDelimiter(const QString &text) const { return "DELIMITER " + text; }
    QString FormatSetNames(const QString &name) const { return "SET NAMES '" + name + u'\''; }
    QString FormatStartTransaction() const { return "START TRANSACTION"; }
    QString FormatRollback() const { return "ROLLBACK"; }
    QString FormatCommit() const { return "COMMIT"; }
    QString FormatDisableFKeyChecks() const { return "SET FOREIGN_KEY_CHECKS = 0"; }
    QString FormatEnableFKeyChecks() const { return "SET FOREIGN_KEY_CHECKS = 1"; }
    QString FormatLockTable(const QString &database, const QString &table,
                            TDbmLockTableOption option) const;
    QString FormatUnlockTables() const { return "UNLOCK TABLES"; }
    QString FormatResetSlave() const
    {
        return FServerFeatures->SourceWords ? "RESET REPLICA" : "RESET SLAVE";
    }
    QString FormatResetMaster() const
    {
        return FServerFeatures->SourceWords ? "RESET BINARY LOGS AND GTIDS" : "RESET MASTER";
    }
    QString FormatResetQueryCache() const { return "RESET QUERY CACHE"; }
    QString FormatFlushHosts() const
    {
        return FServerFeatures->SourceWords ? "TRUNCATE TABLE performance_schema.host_cache"
                                            : "FLUSH HOSTS";
    }
    QString FormatFlushDESKeyFile() const { return "FLUSH DES_KEY_FILE"; }
    QString FormatFlushLogs() const { return "FLUSH LOGS"; }
    QString FormatFlushPrivileges() const { return "FLUSH PRIVILEGES"; }
    QString FormatFlushQueryCache() const { return "FLUSH QUERY CACHE"; }
    QString FormatFlushStatus() const { return "FLUSH STATUS"; }
    QString FormatFlushTablesWithReadLock() const { return "FLUSH TABLES WITH READ LOCK"; }
    QString FormatFlushUserResources() const { return "FLUSH USER_RESOURCES"; }
};
