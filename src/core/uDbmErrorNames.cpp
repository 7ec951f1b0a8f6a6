#include "core/uDbmErrorNames.h"

#include "support/uXmlUtils.h"

namespace {

TDbmErrorNameList &ErrorNames()
{
    static TDbmErrorNameList list;
    return list;
}

} // namespace

void TDbmErrorNameList::LoadFromXml(const QString &xmlName)
{
    QDomDocument document;
    TXmlUtils::OpenXml(xmlName, document);

    FDict.clear();
    TXmlUtils::ForEachByName(document.documentElement(), "error", [this](const QDomElement &node) {
        const int code = TXmlUtils::GetAttributeValueAsInteger(node, "code", 0);
        if (!FDict.contains(code))
            FDict.insert(code,
                         {TXmlUtils::GetAttributeValueAsString(node, "name", QString()), code});
    });
}

const TDbmErrorNameItem *TDbmErrorNameList::Find(int errorCode) const
{
    const auto found = FDict.constFind(errorCode);
    return found == FDict.constEnd() ? nullptr : &found.value();
}

void TDbmErrorCodeParser::Initialize(const QString &xmlName)
{
    ErrorNames().LoadFromXml(xmlName);
}

QString TDbmErrorCodeParser::Parse(int errorCode)
{
    const TDbmErrorNameItem *item = ErrorNames().Find(errorCode);
    return item ? item->ErrorName : QString();
}
