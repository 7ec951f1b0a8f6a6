#pragma once

#include "client/uDataSet.h"
#include "model/uDbmEntities.h"
#include "sql/uDbmChildFormatters.h"

/// Statements about the columns of a table or view. Where a column was read from a server and its
/// type or default was not edited, the server's own text is written for what the record would
/// narrow.
class TDbmFieldFormatters : public TDbmChildFormatters
{
public:
    explicit TDbmFieldFormatters(const TDbmServerFeatures *features) : TDbmChildFormatters(features)
    {}

    QString FormatSelect(const QString &database, const QString &table) const;
    /// A column of a type that the model does not know keeps the server's type text alone.
    TDbmFieldEntity ParseSelectRow(const TDataSet &row) const;

    QString FormatDefinition(const TDbmFieldEntity &field, const QString &tableCollation,
                             bool isNew) const;
    QString FormatAddColumn(const TDbmFieldEntity &field, const TDbmFieldPosition &position,
                            const QString &tableCollation) const;
    QString FormatModifyColumn(const TDbmFieldEntity &field, const TDbmFieldPosition &position,
                               const QString &tableCollation) const;
    QString FormatChangeColumn(const TDbmFieldEntity &field, const TDbmFieldPosition &position,
                               const QString &newName, const QString &tableCollation) const;
    QString FormatDropColumn(const QString &name) const;

    QString FormatAlterTableAddColumn(const QString &database, const QString &table,
                                      const TDbmFieldEntity &field,
                                      const TDbmFieldPosition &position,
                                      const QString &tableCollation) const;
    QString FormatAlterTableModifyColumn(const QString &database, const QString &table,
                                         const TDbmFieldEntity &field,
                                         const TDbmFieldPosition &position,
                                         const QString &tableCollation) const;
    QString FormatAlterTableChangeColumn(const QString &database, const QString &table,
                                         const TDbmFieldEntity &field,
                                         const TDbmFieldPosition &position, const QString &newName,
                                         const QString &tableCollation) const;
    QString FormatAlterTableDropColumn(const QString &database, const QString &table,
                                       const QString &name) const;

    /// Whether a CHECK may belong to a column's definition and would go with it.
    bool HaveColumnChecks() const { return FServerFeatures->ColumnChecks; }
    /// The type as a statement has to write it; lines.
    QString FormatColumnType(const TDbmFieldEntity &field, const QString &tableCollation) const;
    /// The CHECK clause that belongs to the column's definition in the table's text; else empty.
    /// Raises EException where the text has no such column: nobody would know then what it has.
    static QString ParseColumnCheck(const QString &tableDDL, const QString &name);

private:
    void ParseDefault(const TDataSet &row, TDbmFieldEntity &field, const QString &extra) const;
    void ParseExtra(const TDataSet &row, TDbmFieldEntity &field, const QString &extra) const;
    void ParseExtraWords(const TDataSet &row, TDbmFieldEntity &field, const QString &extra) const;
    QString FormatPosition(const TDbmFieldPosition &position) const;
    QString FormatDefault(const TDbmFieldEntity &field) const;
    QString FormatNullable(const TDbmFieldEntity &field) const;
};
