#include "pages/query/uTextDocumentFile.h"

QString TTextDocumentFile::Load(const QString &fileName)
{
    FFileName = fileName;
    FForm = {};
    QString text;
    TFileUtils::ReadText(fileName, {}, text, FForm);
    FStamp = TFileStamp::Of(fileName);
    return text;
}

bool TTextDocumentFile::IsChangedOnDisk() const
{
    return !FFileName.isEmpty() && TFileStamp::Of(FFileName) != FStamp;
}

void TTextDocumentFile::Save(const QString &text)
{
    TFileUtils::WriteText(FFileName, text, FForm);
    FStamp = TFileStamp::Of(FFileName);
}

void TTextDocumentFile::SaveAs(const QString &fileName, const QString &text)
{
    TFileUtils::WriteText(fileName, text, FForm);
    FFileName = fileName;
    FStamp = TFileStamp::Of(fileName);
}
