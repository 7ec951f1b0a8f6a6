#include "app/uAppSqlCatalogue.h"

#include "support/uException.h"
#include "support/uFileUtils.h"
#include "support/uFormat.h"
#include "support/uXmlUtils.h"

#include <QDir>

namespace {

QString Attribute(const QDomElement &node, const char *name)
{
    return TXmlUtils::GetAttributeValueAsString(node, name, QString());
}

template <typename TItem>
void Load(const QString &fileName, const QString &itemName,
          typename TAppSqlCatalogue<TItem>::TGroups &groups,
          const std::function<TItem(const QDomElement &)> &read)
{
    using TGroup = typename TAppSqlCatalogue<TItem>::TGroup;
    QDomDocument document;
    TXmlUtils::OpenXml(fileName, document);
    groups.clear();
    TXmlUtils::ForEachByName(document.documentElement(), "group", [&](const QDomElement &node) {
        auto group = std::make_unique<TGroup>();
        TXmlUtils::ForEachByName(node, itemName, [&](const QDomElement &item) {
            group->FItems.push_back(std::make_unique<TItem>(read(item)));
        });
        group->FName = Attribute(node, "name");
        groups.push_back(std::move(group));
    });
}

} // namespace

void TAppSqlFunctions::Process()
{
    if (FProcessed)
        return;
    FProcessed = true;
    Load<TAppSqlFunctionsItem>(FXmlName, "function", FGroups, [](const QDomElement &node) {
        return TAppSqlFunctionsItem{Attribute(node, "name"), Attribute(node, "value"),
                                    Attribute(node, "description")};
    });
}

void TAppSqlTemplates::Process()
{
    const QString index = QDir(FTemplatesDirectory).filePath("index.xml");
    Load<TAppSqlTemplatesItem>(index, "template", FGroups, [](const QDomElement &node) {
        return TAppSqlTemplatesItem{Attribute(node, "name"), Attribute(node, "filename"),
                                    Attribute(node, "description")};
    });
}

QString TAppSqlTemplates::GetTemplateValue(const TAppSqlTemplatesItem &item) const
{
    const QString fileName = QDir(FTemplatesDirectory).filePath(item.FFileName);
    QString text;
    if (!TFileUtils::ReadText(fileName, QString(), text))
        throw EException(TFormat::Format("File \"%s\" not found.", {fileName}));
    return text;
}
