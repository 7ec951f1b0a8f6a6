#include "core/uTextFileReader.h"
#include "support/uFileUtils.h"
#include "uTestErrors.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace {

struct TFileRow
{
    const char *Name;
    QByteArray Bytes;
    QStringList Lines;
    bool KeepTabs = false;
};

const QByteArray Mark("\xEF\xBB\xBF");

const TFileRow Files[] = {
    {"Empty", "", {}},
    {"OneLineWithoutAnEnd", "abc", {"abc"}},
    {"EmptyLinesCount", "a\n\nb\n", {"a", "", "b"}},
    {"CarriageReturnsAreDropped", "a\r\nb\rc\r\n", {"a", "bc"}},
    {"ControlsBelowFourteenAreDropped",
     QByteArray("a\0b\1c\tdefghij\v\fk\x0El\x1Fm\n", 21),
     {QString("abcdefghijk\x0El\x1Fm")}},
    {"TabsAreKeptOnDemand", QByteArray("a\tb\0c\r\n\t", 8), {"a\tbc", "\t"}, true},
    {"MarkIsTakenOff", Mark + "a\n" + Mark + "b", {"a", QString(QChar(0xFEFF)) + "b"}},
    {"CyrillicWithoutMarkIsUtf8WhenValid", "\xD1\x8F\n", {QString::fromUtf8("я")}},
    {"CodePageWhereTheBytesAreNoUtf8",
     "\xFF\xFE\n\xD1\x8F",
     {QString::fromUtf8("яю"), QString::fromUtf8("я")}},
    {"CharacterCutByTheLineEnd", "a\xD1\nb", {QString::fromUtf8("aС"), "b"}},
    {"InvalidBytesBehindAMarkAreReplaced",
     Mark + "a\xFF" + "b\n",
     {QString("a") + QChar(0xFFFD) + "b"}},
};

class TReader : public ::testing::Test
{
protected:
    TReader()
    {
        // Stands for the one-byte code page of an older system.
        TTextCoding::SetLegacyCodePage("windows-1251");
        FReader.SetOnReadLine([this](TTextFileReader *, const QString &line, bool &isBreak) {
            FLines.append(line);
            isBreak = line == "stop";
        });
    }
    ~TReader() override { TTextCoding::SetLegacyCodePage(QString()); }

    QStringList Read(const QByteArray &bytes)
    {
        const QString name = FFolder.filePath("file.txt");
        TFileUtils::WriteBinary(name, bytes);
        FLines.clear();
        FReader.Execute(name);
        return FLines;
    }

    QTemporaryDir FFolder;
    TTextFileReader FReader;
    QStringList FLines;
};

class TReaderRows : public TReader, public ::testing::WithParamInterface<TFileRow>
{};

TEST_P(TReaderRows, ReadsTheSameLinesWhereverABlockEnds)
{
    FReader.SetKeepTabs(GetParam().KeepTabs);
    for (const int size : {1, 2, 3, 5, 16, 131072}) {
        FReader.SetBufferSize(size);
        EXPECT_EQ(Read(GetParam().Bytes), GetParam().Lines) << "blocks of " << size;
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, TReaderRows, ::testing::ValuesIn(Files),
                         [](const auto &info) { return std::string(info.param.Name); });

TEST_F(TReader, FindsControlsAtEveryPlace)
{
    for (int place = 0; place < 24; ++place) {
        QByteArray line(24, '\xE9'); // one byte above ASCII, by the code page
        line[place] = '\x0D';
        EXPECT_EQ(Read(line), QStringList{QString(23, QChar(0x0439))}) << place;
    }
}

TEST_F(TReader, StopsWhenTold)
{
    EXPECT_EQ(Read("a\nstop\nb\nc"), (QStringList{"a", "stop"}));
    EXPECT_EQ(Read("b"), QStringList{"b"});
}

TEST_F(TReader, AFileThatCannotBeReadIsAnErrorWithItsPath)
{
    for (const QString &name : {FFolder.filePath("missing.txt"), FFolder.path()})
        EXPECT_THAT(MessageOf([&] { FReader.Execute(name); }),
                    testing::HasSubstr(name.toStdString()));
}

} // namespace
