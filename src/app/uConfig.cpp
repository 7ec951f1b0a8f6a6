#include "app/uConfig.h"

#include "support/uException.h"
#include "support/uFileUtils.h"
#include "support/uStringUtils.h"
#include "support/uTextCoding.h"
#include "support/uXmlUtils.h"

#include <QFileInfo>
#include <QSet>

namespace {

const QString RootElement = QStringLiteral("config");
const QString FileVersion = QStringLiteral("1.0.0");
const QString GroupElement = QStringLiteral("group");
const QString PropertyElement = QStringLiteral("property");
const QByteArray HexMark("\xEF\xBB\xBF");

QSet<QString> &UnreadableFiles()
{
    static QSet<QString> files;
    return files;
}

QString Key(const QString &fileName)
{
    return QFileInfo(fileName).absoluteFilePath();
}

QString ToHex(const QString &value)
{
    return value.isEmpty() ? QString() : TStringUtils::BytesToHex(HexMark + value.toUtf8());
}

QString FromHex(const QString &digits)
{
    const QByteArray bytes = TStringUtils::HexToBytes(digits);
    bool ok = false;
    return bytes.startsWith(HexMark) ? TTextCoding::DecodeUtf8(bytes.mid(HexMark.size()), ok)
                                     : TTextCoding::DecodeLegacy(bytes, ok);
}

} // namespace

TConfig::TConfig()
{
    StartDocument();
}

void TConfig::StartDocument()
{
    TXmlUtils::CreateXml(RootElement, FileVersion, Fxml);
}

void TConfig::New(const QString &fileName)
{
    FFileName = fileName;
    StartDocument();
}

void TConfig::Open(const QString &fileName)
{
    New(fileName);
    try {
        if (TFileUtils::Exists(fileName))
            TXmlUtils::OpenXml(fileName, Fxml);
    } catch (const EException &) {
        MarkUnreadable(fileName);
        throw;
    }
}

void TConfig::Close()
{
    if (!FFileName.isEmpty() && !IsUnreadable(FFileName))
        SaveCopy(FFileName);
    FFileName.clear();
    StartDocument();
}

void TConfig::SaveCopy(const QString &fileName) const
{
    TFileUtils::WriteBinary(fileName, ToBytes(), TFileUtils::TAccess::faOwnerOnly);
}

void TConfig::Copy(const TConfig &other)
{
    FFileName.clear();
    Fxml = other.Fxml.cloneNode(true).toDocument();
}

QByteArray TConfig::ToBytes() const
{
    return TXmlUtils::ToBytes(Fxml);
}

bool TConfig::IsUnreadable(const QString &fileName)
{
    return UnreadableFiles().contains(Key(fileName));
}

void TConfig::MarkUnreadable(const QString &fileName)
{
    UnreadableFiles().insert(Key(fileName));
}

void TConfig::ForgetUnreadable(const QString &fileName)
{
    UnreadableFiles().remove(Key(fileName));
}

void TConfig::GetNode(const QString &groupPath, const QString &name, QDomElement &node,
                      bool create) const
{
    TXmlUtils::GetNodeByPath(Fxml.documentElement(), groupPath, node, PropertyElement, GroupElement,
                             create, name);
}

QDomElement TConfig::Node(const QString &groupPath, const QString &name) const
{
    QDomElement node;
    GetNode(groupPath, name, node);
    return node;
}

QDomElement TConfig::NewNode(const QString &groupPath, const QString &name)
{
    QDomElement node;
    GetNode(groupPath, name, node, true);
    return node;
}

QString TConfig::GetValue(const QString &groupPath, const QString &name, const QString &def,
                          bool hex) const
{
    const QDomElement node = Node(groupPath, name);
    if (node.isNull())
        return def;
    const QString text = TXmlUtils::GetValueAsString(node, QString());
    return hex ? FromHex(text) : text;
}

int TConfig::GetValue(const QString &groupPath, const QString &name, int def) const
{
    return TXmlUtils::GetValueAsInteger(Node(groupPath, name), def);
}

double TConfig::GetValue(const QString &groupPath, const QString &name, double def) const
{
    return TXmlUtils::GetValueAsFloat(Node(groupPath, name), def);
}

bool TConfig::GetBoolean(const QString &groupPath, const QString &name, bool def) const
{
    return TXmlUtils::GetValueAsBoolean(Node(groupPath, name), def);
}

void TConfig::SetValue(const QString &groupPath, const QString &name, const QString &value,
                       bool hex)
{
    TXmlUtils::SetValueAsStr(NewNode(groupPath, name), hex ? ToHex(value) : value);
}

void TConfig::SetValue(const QString &groupPath, const QString &name, int value)
{
    TXmlUtils::SetValueAsInt(NewNode(groupPath, name), value);
}

void TConfig::SetValue(const QString &groupPath, const QString &name, double value)
{
    TXmlUtils::SetValueAsFloat(NewNode(groupPath, name), value);
}

void TConfig::SetBoolean(const QString &groupPath, const QString &name, bool value)
{
    TXmlUtils::SetValueAsBoolean(NewNode(groupPath, name), value);
}

void TConfig::ClearNode(const QString &groupPath)
{
    QDomElement node = Node(groupPath);
    while (node.hasChildNodes())
        node.removeChild(node.firstChild());
}

int TConfig::GetChildCount(const QString &groupPath) const
{
    int count = 0;
    QDomElement child = Node(groupPath).firstChildElement();
    for (; !child.isNull(); child = child.nextSiblingElement())
        ++count;
    return count;
}

QStringList TConfig::GetGroupNames(const QString &groupPath) const
{
    QStringList names;
    TXmlUtils::ForEachByName(Node(groupPath), GroupElement,
                             [&](const QDomElement &group) { names += TXmlUtils::GetName(group); });
    return names;
}
