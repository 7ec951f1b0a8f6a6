#pragma once

#include <QDomDocument>
#include <QString>
#include <functional>

/// The node work below every XML file of the system: groups and properties addressed by paths whose
/// names are joined by ".". Child search takes the first element with the right tag and `name`.
/// Names and texts come back as they were set, also with characters that XML cannot hold: these are
/// written as hexadecimal digits, which an attribute of the element tells.
class TXmlUtils
{
public:
    using TElementAction = std::function<void(const QDomElement &)>;

    static void CreateXml(const QString &rootName, const QString &version, QDomDocument &document);
    /// Raises EException with the file's path and the parser's message, line and column.
    static void OpenXml(const QString &fileName, QDomDocument &document);
    /// Document text with eight blanks a level, encoded as UTF-8.
    static QByteArray ToBytes(const QDomDocument &document);

    /// Walks from `root` along `groupPath` and, when `propertyName` is given, to that property.
    /// Missing nodes are added when `create` is set, else the result is a null element. An empty
    /// path is the root itself.
    static void GetNodeByPath(QDomElement root, const QString &groupPath, QDomElement &node,
                              const QString &propertyElement, const QString &groupElement,
                              bool create, const QString &propertyName);
    /// The `name` of a group or property.
    static QString GetName(const QDomElement &node);

    static int GetAttributeValueAsInteger(const QDomElement &node, const QString &name, int def);
    static QString GetAttributeValueAsString(const QDomElement &node, const QString &name,
                                             const QString &def);
    /// The readers give `def` for a null element, and for a text that is no number.
    static bool GetValueAsBoolean(const QDomElement &node, bool def);
    static double GetValueAsFloat(const QDomElement &node, double def);
    static int GetValueAsInteger(const QDomElement &node, int def);
    static QString GetValueAsString(const QDomElement &node, const QString &def);
    static void SetValueAsBoolean(QDomElement node, bool value);
    static void SetValueAsFloat(QDomElement node, double value);
    static void SetValueAsInt(QDomElement node, int value);
    static void SetValueAsStr(QDomElement node, const QString &value);
    /// Calls back for each direct child with that tag, in document order.
    static void ForEachByName(const QDomElement &node, const QString &elementName,
                              const TElementAction &action);
};
