#pragma once

#include "model/uDbmList.h"

class TDbmFieldList;
class TDbmIndexItem;
class TDbmReferenceItem;
class TDbmTableItem;

/// One column of a table or view.
class TDbmFieldItem : public TDbmTableChildItem<TDbmFieldEntity>
{
public:
    using TIndexPtr = std::shared_ptr<TDbmIndexItem>;
    using TIndexAction = std::function<void(TDbmIndexItem &index)>;
    using TIndexExpression = std::function<bool(TDbmIndexItem &index)>;

    explicit TDbmFieldItem(TDbmElement *owner) : TDbmTableChildItem(owner) {}

    bool HaveAttribute(TDbmFieldTypeAttr attribute);
    bool IsType(const TDbmFieldDataTypes &types);
    bool IsBinary();
    bool IsBlob();
    bool IsBoolean();
    bool IsDate();
    bool IsNumeric();
    bool IsOrdinal();
    bool IsString();
    bool IsText();

    bool HavePrimaryKey();
    bool HaveUniqueKey();
    bool HaveIndex();
    bool HaveReference();
    /// Each index of the table that has this column; none for a view.
    void ForEachIndex(const TIndexAction &action);
    bool TryFindIndex(const TIndexExpression &expression, TIndexPtr &item);
    /// The first foreign key with this column as a source.
    bool TryGetForeignKey(std::shared_ptr<TDbmReferenceItem> &item);

    QString GetTypeDisplayString();
    QString GetKeyDisplayString();
    QString GetReferenceDisplayString();
    QString GetReferenceOnUpdateDisplayString();
    QString GetReferenceOnDeleteDisplayString();

private:
    TDbmFieldList &List() const;
    bool HaveIndexOf(TDbmIndexKind kind);
    QString ArgumentsText(const TDbmFieldType &type) const;
};

/// The columns of a table or a view.
class TDbmFieldList
    : public TDbmNamedList<TDbmFieldItem, TDbmFieldEntity, &TDbmFieldEntity::FieldName>
{
public:
    explicit TDbmFieldList(TDbmElement *owner) : TDbmNamedList(owner) {}

    /// nullptr under a view.
    TDbmTableItem *Table() const;
    QString DatabaseName() const;
    QString OwnerName() const;
    QString OwnerCollation();

protected:
    TDbmComparer<TDbmFieldEntity> CreateEntityComparer() override;
    QList<TDbmFieldEntity> SelectEntities() override;
    void DoRequestProcess() override;
    void DoProcess() override;

private:
    // Marking the data stale must be able to name an owner that is stale itself.
    QString FRequestProcessDatabaseName;
    QString FRequestProcessTableName;
};
