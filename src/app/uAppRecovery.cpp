#include "app/uAppRecovery.h"

#include "support/uException.h"
#include "support/uFileUtils.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

void TAppRecovery::SetParams(const QString &folder, const QString &sessionId)
{
    FFolder = folder + "/recovery/" + sessionId;
}

QStringList TAppRecovery::FileNames() const
{
    QStringList names = QDir(FFolder).entryList({"*.sql"}, QDir::Files, QDir::Name);
    std::reverse(names.begin(), names.end());
    for (QString &name : names)
        name = FFolder + '/' + name;
    return names;
}

void TAppRecovery::Store(const QString &text)
{
    if (text.trimmed().isEmpty())
        return;
    QString fileName;
    if (IsNewest(text))
        return;
    if (!QDir().mkpath(FFolder))
        throw EException("Cannot create the folder \"" + FFolder + "\".");

    const QString stem =
        FFolder + '/' + QDateTime::currentDateTimeUtc().toString("yyyyMMdd-hhmmsszzz");
    int number = 0;
    do
        fileName = QStringLiteral("%1-%2.sql").arg(stem).arg(number++, 3, 10, QChar(u'0'));
    while (TFileUtils::Exists(fileName));
    TFileUtils::WriteBinary(fileName, text.toUtf8(), TFileUtils::TAccess::faOwnerOnly);

    const QStringList names = FileNames();
    for (int i = MaxCount; i < names.size(); ++i)
        QFile::remove(names[i]);
}

bool TAppRecovery::IsNewest(const QString &text) const
{
    try {
        QString newest, fileName;
        return TryGetNewest(newest, fileName) && newest == text;
    } catch (const EException &) {
        return false; // an older text that cannot be read must not keep this one from being kept
    }
}

bool TAppRecovery::TryGetNewest(QString &text, QString &fileName) const
{
    const QStringList names = FileNames();
    if (names.isEmpty())
        return false;
    fileName = names.first();
    QByteArray bytes;
    TFileUtils::ReadBinary(fileName, bytes);
    text = QString::fromUtf8(bytes);
    return true;
}

void TAppRecovery::Remove(const QString &fileName)
{
    if (!QFile::remove(fileName) && QFile::exists(fileName))
        throw EException("Cannot remove the file \"" + fileName + "\".");
}
