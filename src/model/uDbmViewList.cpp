#include "model/uDbmViewList.h"

#include "model/uDbmDatabaseList.h"
#include "model/uDbmFieldList.h"
#include "sql/uDbmCommands.h"
#include "sql/uDbmPathUtils.h"

#include <QRegularExpression>

namespace {

using TViews = TDbmViewList::TItems;

/// Depth first, so that what a view stands on comes before it.
class TDependencySort
{
public:
    explicit TDependencySort(const TViews &views) : FViews(views), FVisited(views.size(), false)
    {
        for (qsizetype i = 0; i < views.size(); ++i)
            FByName.insert(QualifiedName(*views[i]), i);
    }

    TViews Sorted()
    {
        for (qsizetype i = 0; i < FViews.size(); ++i)
            Visit(i);
        return FSorted;
    }

private:
    static QString Escaped(QString name) { return name.replace('`', "``"); }

    // As it stands in definitions.
    static QString QualifiedName(const TDbmViewItem &view)
    {
        return TDbmPathUtils::FormatDbObject(Escaped(view.DatabaseName()),
                                             Escaped(view.ViewName()));
    }

    void Visit(qsizetype index)
    {
        if (FVisited[index])
            return;
        FVisited[index] = true;
        for (const qsizetype used : UsedBy(index))
            Visit(used);
        FSorted.append(FViews[index]);
    }

    // All qualified names of a definition in one pass: a look for each view in each definition
    // would take the square of their number.
    QList<qsizetype> UsedBy(qsizetype index)
    {
        static const QRegularExpression name("`(?:[^`]|``)+`\\.`(?:[^`]|``)+`");
        QList<qsizetype> used;
        const QString &definition = FViews[index]->Entity().Definition;
        // A column is written as database, view and name: the first two are looked at again.
        qsizetype at = 0;
        for (auto match = name.match(definition, at); match.hasMatch();
             match = name.match(definition, at)) {
            const auto found = FByName.constFind(match.captured());
            if (found != FByName.constEnd() && *found != index)
                used.append(*found);
            at = definition.indexOf(u'.', match.capturedStart()) + 1;
        }
        return used;
    }

    const TViews &FViews;
    QHash<QString, qsizetype> FByName;
    QList<bool> FVisited;
    TViews FSorted;
};

} // namespace

TDbmViewItem::TDbmViewItem(TDbmElement *owner) : TDbmItem(owner) {}

TDbmViewItem::~TDbmViewItem() = default;

bool TDbmViewItem::HaveLoadedFields() const
{
    return FFields && FFields->IsProcessed();
}

TDbmFieldList &TDbmViewItem::Fields()
{
    return Child(FFields);
}

void TDbmViewItem::DoRequestProcess()
{
    TDbmItem::DoRequestProcess();
    RequestProcessOf(FFields);
}

void TDbmViewItem::DoProcessEntity()
{
    TDbmViewEntity entity;
    if (FCommands->Views().ExecuteSelectRow(FDatabaseName, FViewName, entity))
        SetEntity(entity);
}

void TDbmViewItem::DoSetEntity()
{
    FDatabaseName = OwnerAs<TDbmViewList>().Database().Name();
    FViewName = static_cast<const TDbmViewEntity &>(*StoredEntity()).ViewName;
}

QString TDbmViewItem::GetCheckOptionDisplayString()
{
    switch (Entity().CheckOption) {
    case vcoCascaded:
        return "Cascaded";
    case vcoLocal:
        return "Local";
    case vcoNone:
        break;
    }
    return "None";
}

QString TDbmViewItem::GetUpdatableDisplayString()
{
    return Entity().Info.Updatable ? "Yes" : "No";
}

QString TDbmViewItem::GetSecurityTypeDisplayString()
{
    switch (Entity().SecurityType) {
    case vsDefiner:
        return "Definer";
    case vsInvoker:
        return "Invoker";
    case vsUnknown:
        break;
    }
    return {};
}

TDbmDatabaseItem &TDbmViewList::Database() const
{
    return OwnerAs<TDbmDatabaseItem>();
}

TDbmViewList::TItems TDbmViewList::ToDependencySortedArray()
{
    const TItems views = ToArray();
    return TDependencySort(views).Sorted();
}

TDbmComparer<TDbmViewEntity> TDbmViewList::CreateEntityComparer()
{
    return TDbmComparers::CreateViewEntityComparer();
}

QList<TDbmViewEntity> TDbmViewList::SelectEntities()
{
    return FCommands->Views().ExecuteSelect(Database().Name());
}
