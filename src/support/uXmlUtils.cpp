#include "support/uXmlUtils.h"

#include "support/uException.h"
#include "support/uFileUtils.h"
#include "support/uFormat.h"
#include "support/uStringUtils.h"

#include <QBuffer>
#include <QLocale>
#include <algorithm>

namespace {

constexpr int Indentation = 8;
const QString NameAttribute = QStringLiteral("name");
const QString HexNameAttribute = QStringLiteral("name_hex");
const QString EncodingAttribute = QStringLiteral("encoding");
const QString HexEncoding = QStringLiteral("hex");

bool IsXmlBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n';
}

// XML has no form at all for most control characters and for the last two of the plane.
bool IsHeldByXml(QChar c)
{
    return c >= u' ' ? c < QChar(0xFFFE) : IsXmlBlank(c) || c == u'\r';
}

bool IsHeldByXml(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return IsHeldByXml(c); });
}

bool IsBlank(const QString &text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), IsXmlBlank);
}

void SetName(QDomElement &node, const QString &name)
{
    if (IsHeldByXml(name))
        node.setAttribute(NameAttribute, name);
    else
        node.setAttribute(HexNameAttribute, TStringUtils::StrToHex(name));
}

QDomElement FindChild(const QDomElement &node, const QString &elementName, const QString &name)
{
    QDomElement child = node.firstChildElement(elementName);
    while (!child.isNull() && TXmlUtils::GetName(child) != name)
        child = child.nextSiblingElement(elementName);
    return child;
}

QDomElement Descend(QDomElement node, const QString &elementName, const QString &name, bool create)
{
    QDomElement child = FindChild(node, elementName, name);
    if (!child.isNull() || !create)
        return child;
    child = node.ownerDocument().createElement(elementName);
    SetName(child, name);
    node.appendChild(child);
    return child;
}

void Clear(QDomElement &node)
{
    while (node.hasChildNodes())
        node.removeChild(node.firstChild());
    node.removeAttribute(EncodingAttribute);
}

void SetDeclaration(QDomDocument &document)
{
    const QDomNode declaration =
        document.createProcessingInstruction("xml", "version=\"1.0\" encoding=\"utf-8\"");
    const QDomNode first = document.firstChild();
    if (first.isProcessingInstruction() && first.nodeName() == u"xml")
        document.replaceChild(declaration, first);
    else
        document.insertBefore(declaration, first);
}

} // namespace

void TXmlUtils::CreateXml(const QString &rootName, const QString &version, QDomDocument &document)
{
    document = QDomDocument();
    QDomElement root = document.createElement(rootName);
    root.setAttribute("version", version);
    document.appendChild(root);
    SetDeclaration(document);
}

void TXmlUtils::OpenXml(const QString &fileName, QDomDocument &document)
{
    QByteArray bytes;
    TFileUtils::ReadBinary(fileName, bytes);
    // Read in pieces: the parser takes twice as long for a text that it gets as a whole.
    QBuffer pieces(&bytes);
    pieces.open(QIODevice::ReadOnly);
    QDomDocument read;
    QString message;
    int line = 0;
    int column = 0;
    if (!read.setContent(&pieces, &message, &line, &column))
        throw EException(TFormat::Format("\"%s\" is not a valid XML file: %s (line %d, column %d).",
                                         {fileName, message, line, column}));
    // Whatever the encoding was, the document is written back as UTF-8.
    SetDeclaration(read);
    document = read;
}

QByteArray TXmlUtils::ToBytes(const QDomDocument &document)
{
    return document.toByteArray(Indentation);
}

void TXmlUtils::GetNodeByPath(QDomElement root, const QString &groupPath, QDomElement &node,
                              const QString &propertyElement, const QString &groupElement,
                              bool create, const QString &propertyName)
{
    node = root;
    for (const QString &group : TStringUtils::Split(groupPath, ".")) {
        if (node.isNull())
            return;
        node = Descend(node, groupElement, group, create);
    }
    if (!propertyName.isEmpty() && !node.isNull())
        node = Descend(node, propertyElement, propertyName, create);
}

QString TXmlUtils::GetName(const QDomElement &node)
{
    return node.hasAttribute(HexNameAttribute)
               ? TStringUtils::HexToStr(node.attribute(HexNameAttribute))
               : node.attribute(NameAttribute);
}

int TXmlUtils::GetAttributeValueAsInteger(const QDomElement &node, const QString &name, int def)
{
    bool ok = false;
    const int value = node.attribute(name).toInt(&ok);
    return ok ? value : def;
}

QString TXmlUtils::GetAttributeValueAsString(const QDomElement &node, const QString &name,
                                             const QString &def)
{
    return node.attribute(name, def);
}

bool TXmlUtils::GetValueAsBoolean(const QDomElement &node, bool def)
{
    return node.isNull() ? def : node.text().compare(u"true", Qt::CaseInsensitive) == 0;
}

double TXmlUtils::GetValueAsFloat(const QDomElement &node, double def)
{
    bool ok = false;
    const double value = node.text().toDouble(&ok);
    return ok ? value : def;
}

int TXmlUtils::GetValueAsInteger(const QDomElement &node, int def)
{
    bool ok = false;
    const int value = node.text().toInt(&ok);
    return ok ? value : def;
}

QString TXmlUtils::GetValueAsString(const QDomElement &node, const QString &def)
{
    if (node.isNull())
        return def;
    const bool hex = node.attribute(EncodingAttribute) == HexEncoding;
    return hex ? TStringUtils::HexToStr(node.text()) : node.text();
}

void TXmlUtils::SetValueAsBoolean(QDomElement node, bool value)
{
    SetValueAsStr(node, value ? "true" : "false");
}

void TXmlUtils::SetValueAsFloat(QDomElement node, double value)
{
    SetValueAsStr(node, QString::number(value, 'g', QLocale::FloatingPointShortest));
}

void TXmlUtils::SetValueAsInt(QDomElement node, int value)
{
    SetValueAsStr(node, QString::number(value));
}

void TXmlUtils::SetValueAsStr(QDomElement node, const QString &value)
{
    Clear(node);
    QDomDocument document = node.ownerDocument();
    if (value.isEmpty())
        return;
    if (!IsHeldByXml(value) || (value.trimmed().isEmpty() && !IsBlank(value))) {
        node.setAttribute(EncodingAttribute, HexEncoding);
        node.appendChild(document.createTextNode(TStringUtils::StrToHex(value)));
    } else if (IsBlank(value)) {
        // The parser drops a text of blanks alone unless it stands in a section of its own.
        node.appendChild(document.createCDATASection(value));
    } else {
        node.appendChild(document.createTextNode(value));
    }
}

void TXmlUtils::ForEachByName(const QDomElement &node, const QString &elementName,
                              const TElementAction &action)
{
    QDomElement child = node.firstChildElement(elementName);
    while (!child.isNull()) {
        // Taken first, since the action may remove the child.
        const QDomElement next = child.nextSiblingElement(elementName);
        action(child);
        child = next;
    }
}
