#include "tools/uCodeComplete.h"

#include "support/uException.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class TWords : public TCodeCompleteBaseManager
{
public:
    explicit TWords(const QStringList &words) : FWords(words) {}
    int Fills = 0;

protected:
    void FillItems(QList<TCodeCompleteItem> &items) override
    {
        ++Fills;
        for (const QString &word : FWords)
            items.append({word, word + "!"});
    }

private:
    const QStringList FWords;
};

/// Suggests one name whatever the path, and tells the path.
class TEcho : public TCodeCompleteLiveSource
{
public:
    explicit TEcho(QString &path) : FPath(path) {}
    void Suggest(const QString &path, QList<TCodeCompleteItem> &items) override
    {
        FPath = path;
        items.append({"name", path + "name"});
    }

private:
    QString &FPath;
};

class TCodeCompleteTest : public testing::Test, public TCodeCompleteEditor
{
protected:
    QString Text() const override { return FText; }
    QString LineBeforeCaret() const override
    {
        return FText.left(FCaret).mid(FText.left(FCaret).lastIndexOf('\n') + 1);
    }
    qint32 CaretLine() const override
    {
        return static_cast<qint32>(FText.left(FCaret).count('\n')) + 1;
    }
    qint32 CaretChar() const override { return static_cast<qint32>(LineBeforeCaret().size()) + 1; }
    /// What the list would show for a text with the caret at its end, or where a bar stands.
    QStringList Shown(const QString &text)
    {
        FCaret = text.contains('|') ? text.indexOf('|') : text.size();
        FText = QString(text).remove('|');
        FManager.DataModified();
        QStringList shown;
        for (const TCodeCompleteMatch &match : FManager.Matches())
            shown += match.Item.DisplayValue;
        return shown;
    }

    QString FText;
    qsizetype FCaret = 0;
    TSynEditCodeCompleteManager FManager{*this};
};

TEST_F(TCodeCompleteTest, WordsComeInTheOrderOfTheirSources)
{
    TWords first({"SELECT", "set"}), second({"SEPARATOR", "SELECT"});
    FManager.AppendManager(&first);
    FManager.AppendManager(&second);
    EXPECT_EQ(Shown("se"), (QStringList{"SELECT", "set", "SEPARATOR", "SELECT"}));
    EXPECT_EQ(Shown("(sel").size(), 0) << "a bracket belongs to the word";
    EXPECT_EQ(Shown("a ").size(), 4) << "everything begins with nothing";
    EXPECT_EQ(first.Fills, 1);
    Shown("a\n\tse");
    const QList<TCodeCompleteMatch> matches = FManager.Matches();
    EXPECT_EQ(matches.first().Replaces, 2);
    EXPECT_EQ(matches.first().Item.InsertValue, "SELECT!");
}

TEST_F(TCodeCompleteTest, StringsAndCommentsAreLeftInPeace)
{
    TWords words({"select"});
    FManager.AppendManager(&words);
    // A string counts where it is closed.
    for (const char *text : {"x 'a' se", "a -- b\nse", "a /* b */ se", "'open se"})
        EXPECT_EQ(Shown(text).size(), 1) << text;
    for (const char *text : {"-- se", "a # se", "/* a\nse"})
        EXPECT_EQ(Shown(text).size(), 0) << text;
}

TEST_F(TCodeCompleteTest, NamesFollowThePathBeforeTheCaret)
{
    QString path;
    TWords words({"count(t.x", "t.b"});
    FManager.AppendManager(&words);
    FManager.AppendLiveSource(std::make_unique<TEcho>(path));
    EXPECT_EQ(Shown("count(t."), (QStringList{"name", "count(t.x"}))
        << "names first behind a point";
    EXPECT_EQ(path, "t.");
    EXPECT_EQ(FManager.Matches().first().Replaces, 2);
    EXPECT_EQ(FManager.Matches().last().Replaces, 8);
    EXPECT_EQ(Shown("cou"), (QStringList{"count(t.x", "name"}));
    Shown("a=`my db`.`od d");
    EXPECT_EQ(path, "`my db`.`od d");
    Shown("f(a,таблица.п");
    EXPECT_EQ(path, "таблица.п");
    Shown("x ");
    EXPECT_EQ(path, "");
    // The caret stands ahead of what the text ends in.
    for (const char *text : {"a='|x'", "IN('t.|'", "f(/*t.|*/1)"})
        EXPECT_EQ(Shown(text).size(), 0) << text << ": a word that began ahead of a quote";
    for (const char *text : {"a='x'+|", "a=''+t.|"})
        EXPECT_EQ(Shown(text), QStringList{"name"}) << text;
}

TEST_F(TCodeCompleteTest, FilesAreReadInTheirOrderOrRefusedByName)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath("words.json");
    const auto write = [&](const QByteArray &bytes) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    write("{\"items\": [{\"insert_value\": \"b(\", \"display_value\": \"b\", \"more\": 1},"
          " {\"display_value\": \"a\"}], \"other\": []}");
    TJsonCodeCompleteManager words(name);
    ASSERT_EQ(words.Items().size(), 2);
    EXPECT_EQ(words.Items()[0].DisplayValue + words.Items()[0].InsertValue, "bb(");
    EXPECT_EQ(words.Items()[1].DisplayValue + words.Items()[1].InsertValue, "a");
    for (const char *malformed : {"{\"items\": [", "[]", "{\"item\": []}"}) {
        write(malformed);
        EXPECT_THROW(TJsonCodeCompleteManager(name).Items(), EException) << malformed;
    }
    EXPECT_THROW(TJsonCodeCompleteManager(name + "x").Items(), EException);
    // The files that come with the program.
    for (const char *file : {"reserved-words.json", "functions.json", "query-statements.json"}) {
        TJsonCodeCompleteManager own(QString(KORVANE_SOURCE_DIR "/data/code-completion/") + file);
        EXPECT_GT(own.Items().size(), 80) << file;
        for (const TCodeCompleteItem &item : own.Items())
            EXPECT_FALSE(item.DisplayValue.isEmpty() || item.InsertValue.isEmpty()) << file;
    }
}

} // namespace
