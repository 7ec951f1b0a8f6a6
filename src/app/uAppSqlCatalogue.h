#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

class QDomElement;

/// What the two catalogues of the side panels have in common: groups of items in a file of XML.
template <typename TItem>
class TAppSqlCatalogue
{
public:
    struct TGroup
    {
        QString FName;
        std::vector<std::unique_ptr<TItem>> FItems;
    };
    using TGroups = std::vector<std::unique_ptr<TGroup>>;

    virtual ~TAppSqlCatalogue() = default;

    /// Raises EException when the file is missing or malformed.
    const TGroups &Groups()
    {
        Process();
        return FGroups;
    }
    /// The items whose names contain the filter, blind to letter case, in the order of the file;
    /// all for an empty filter. They stay the catalogue's.
    QList<const TItem *> SelectItemsByFilter(const QString &filter)
    {
        QList<const TItem *> items;
        for (const auto &group : Groups())
            for (const auto &item : group->FItems)
                if (item->FName.contains(filter, Qt::CaseInsensitive))
                    items.append(item.get());
        return items;
    }

protected:
    virtual void Process() = 0;

    TGroups FGroups;
};

struct TAppSqlFunctionsItem
{
    QString FName, FValue, FDescription;
};

/// SQL functions with what they do. The file is read once, also when reading it fails: the
/// catalogue is empty from then on.
class TAppSqlFunctions : public TAppSqlCatalogue<TAppSqlFunctionsItem>
{
public:
    explicit TAppSqlFunctions(const QString &xmlName) : FXmlName(xmlName) {}

protected:
    void Process() override;

private:
    const QString FXmlName;
    bool FProcessed = false;
};

struct TAppSqlTemplatesItem
{
    QString FName, FFileName, FDescription;
};

/// Statements to start from. Deliberate: the index is read again at every access, so that a change
/// in it is seen without a restart; items of an earlier access are gone then.
class TAppSqlTemplates : public TAppSqlCatalogue<TAppSqlTemplatesItem>
{
public:
    explicit TAppSqlTemplates(const QString &templatesDirectory)
        : FTemplatesDirectory(templatesDirectory)
    {}
    /// Raises EException when the item's file is missing.
    QString GetTemplateValue(const TAppSqlTemplatesItem &item) const;

protected:
    void Process() override;

private:
    const QString FTemplatesDirectory;
};
