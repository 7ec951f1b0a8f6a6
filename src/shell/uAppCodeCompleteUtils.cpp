#include "shell/uAppCodeCompleteUtils.h"

#include "app/uAppPathUtils.h"
#include "model/uDbmFieldList.h"
#include "model/uDbmManager.h"
#include "model/uDbmRoutineList.h"
#include "model/uDbmTableList.h"
#include "model/uDbmViewList.h"
#include "pages/query/uCodeCompletion.h"
#include "widgets/uTextEditor.h"

#include <QRegularExpression>
#include <QSet>

namespace {

// The parts of a path without their backticks; the last one is what is being typed.
QStringList PartsOf(const QString &path)
{
    QStringList parts{QString()};
    bool quoted = false;
    for (qsizetype i = 0; i < path.size(); ++i) {
        if (path[i] == u'`' && quoted && i + 1 < path.size() && path[i + 1] == u'`')
            parts.last() += path[i++];
        else if (path[i] == u'`')
            quoted = !quoted;
        else if (path[i] == u'.' && !quoted)
            parts.append(QString());
        else
            parts.last() += path[i];
    }
    return parts;
}

bool IsPlain(const QString &name)
{
    static const QRegularExpression plain("^[A-Za-z_$\\x{80}-\\x{ffff}][\\w$\\x{80}-\\x{ffff}]*$");
    return plain.match(name).hasMatch();
}

QString Quoted(QString name)
{
    return u'`' + name.replace("`", "``") + u'`';
}

// Words of the list of words that name a column or a table on every server as they are.
bool IsFreeWord(const QString &word)
{
    static const QStringList words =
        QString("AUTO_INCREMENT BEGIN COMMENT COMMIT DATE DATETIME DEFINER DELIMITER DUPLICATE END "
                "ENGINE ENUM EVENT EXECUTE FLUSH FOLLOWING GLOBAL HANDLER IDENTIFIED INVISIBLE "
                "INVOKER JSON LANGUAGE MODIFY OPEN PRECEDING PREPARE PRIVILEGES PROCESSLIST REPAIR "
                "RETURNS ROLE ROLLBACK SAVEPOINT SCHEDULE SECURITY SESSION START STATUS TABLES "
                "TEMPORARY TEXT TIME TIMESTAMP TRANSACTION TRIGGERS TRUNCATE UNBOUNDED UNTIL USER "
                "VARIABLES VIEW WARNINGS WORK YEAR")
            .split(u' ');
    return words.contains(word);
}

// As it was last read: nothing is read for it.
template <typename TEntity>
const TEntity &Stored(const TDbmItemBase &item)
{
    return static_cast<const TEntity &>(*item.StoredEntity());
}

bool Is(const QString &name, const QString &other)
{
    return name.compare(other, Qt::CaseInsensitive) == 0;
}

} // namespace

/// Collects what begins with the last part of a path.
class TAppLoadedNamesCodeCompleteSource::TNames
{
public:
    TNames(const QStringList &parts, QList<TCodeCompleteItem> &items,
           TCodeCompleteBaseManager &words)
        : FPrefix(parts.last()), FWords(words), FItems(items)
    {
        for (const QString &part : parts.first(parts.size() - 1))
            FQualifier += Written(part) + u'.';
    }

    void Add(const QString &name)
    {
        if (!name.startsWith(FPrefix, Qt::CaseInsensitive) || FSeen.contains(name))
            return;
        FSeen.insert(name);
        FItems.append({name, FQualifier + Written(name)});
    }
    void AddObjects(TDbmDatabaseItem &database)
    {
        if (database.Tables().IsProcessed())
            database.Tables().ForEach([&](TDbmTableItem &table) { Add(table.TableName()); });
        if (database.Views().IsProcessed())
            database.Views().ForEach([&](TDbmViewItem &view) { Add(view.ViewName()); });
        if (database.Routines().IsProcessed())
            database.Routines().ForEach([&](TDbmRoutineItem &routine) {
                Add(Stored<TDbmRoutineEntity>(routine).RoutineName);
            });
    }
    /// Columns of one table or view, or of all that tell theirs.
    void AddColumns(TDbmDatabaseItem &database, const QString &name)
    {
        const auto add = [&](auto &owner, const QString &ownerName) {
            if ((name.isEmpty() || Is(ownerName, name)) && owner.HaveLoadedFields())
                owner.Fields().ForEach(
                    [&](TDbmFieldItem &field) { Add(Stored<TDbmFieldEntity>(field).FieldName); });
        };
        if (database.Tables().IsProcessed())
            database.Tables().ForEach([&](TDbmTableItem &item) { add(item, item.TableName()); });
        if (database.Views().IsProcessed())
            database.Views().ForEach([&](TDbmViewItem &item) { add(item, item.ViewName()); });
    }

private:
    // Behind a point every plain word is a name.
    QString Written(const QString &name) const
    {
        return IsPlain(name) && (!FQualifier.isEmpty() || !IsReserved(name)) ? name : Quoted(name);
    }
    bool IsReserved(const QString &name) const
    {
        const QString word = name.toUpper();
        for (const TCodeCompleteItem &item : FWords.Items())
            if (item.DisplayValue == word)
                return !IsFreeWord(word);
        return false;
    }

    const QString FPrefix;
    QString FQualifier;
    TCodeCompleteBaseManager &FWords;
    QList<TCodeCompleteItem> &FItems;
    QSet<QString> FSeen;
};

TAppQueryStatementsCodeCompleteManager::TAppQueryStatementsCodeCompleteManager()
    : TJsonCodeCompleteManager(TAppPathUtils::StatementsCompletionFile())
{}

TAppReservedWordsCodeCompleteManager::TAppReservedWordsCodeCompleteManager()
    : TJsonCodeCompleteManager(TAppPathUtils::ReservedWordsFile())
{}

TAppFunctionsCodeCompleteManager::TAppFunctionsCodeCompleteManager()
    : TJsonCodeCompleteManager(TAppPathUtils::FunctionsCompletionFile())
{}

TAppLoadedNamesCodeCompleteSource::TAppLoadedNamesCodeCompleteSource(
    TDbmManager *manager, TText usedDatabase, TText text, TCodeCompleteBaseManager *reservedWords)
    : FManager(manager), FReservedWords(reservedWords), FUsedDatabase(std::move(usedDatabase)),
      FText(std::move(text))
{}

void TAppLoadedNamesCodeCompleteSource::Suggest(const QString &path,
                                                QList<TCodeCompleteItem> &items)
{
    if (!FManager->Databases().IsProcessed())
        return;
    const QStringList parts = PartsOf(path);
    TNames names(parts, items, *FReservedWords);
    const QString used = FUsedDatabase();
    const auto each = [&](const std::function<void(TDbmDatabaseItem &, const QString &)> &action) {
        FManager->Databases().ForEach([&](TDbmDatabaseItem &item) {
            action(item, Stored<TDbmDatabaseEntity>(item).DatabaseName);
        });
    };
    const auto isNear = [&](const QString &name) { return used.isEmpty() || Is(name, used); };
    if (parts.size() == 1) {
        each([&](TDbmDatabaseItem &item, const QString &name) {
            if (isNear(name))
                names.AddObjects(item);
        });
        each([&](TDbmDatabaseItem &, const QString &name) { names.Add(name); });
        each([&](TDbmDatabaseItem &item, const QString &name) {
            if (isNear(name))
                names.AddColumns(item, QString());
        });
        return;
    }
    const QString &owner = parts[parts.size() - 2];
    const QString database = parts.size() > 2 ? parts[parts.size() - 3] : QString();
    QList<TTableName> tables{{database, owner}};
    if (database.isEmpty())
        tables = TablesOf(owner) + tables;
    for (const TTableName &table : std::as_const(tables))
        each([&](TDbmDatabaseItem &item, const QString &name) {
            if (table.Database.isEmpty() ? isNear(name) : Is(name, table.Database))
                names.AddColumns(item, table.Table);
        });
    each([&](TDbmDatabaseItem &item, const QString &name) {
        if (parts.size() == 2 && Is(name, owner))
            names.AddObjects(item);
    });
}

// What the name stands for in the FROM or the JOIN of a statement: another name of a table, or a
// table that is written with its database there.
QList<TAppLoadedNamesCodeCompleteSource::TTableName>
TAppLoadedNamesCodeCompleteSource::TablesOf(const QString &owner) const
{
    const QString name = "`?" + QRegularExpression::escape(owner) + "`?(?![\\w$`.])";
    const QString any = "(`[^`]+`|[\\w$]+)";
    const QRegularExpression table(
        "(?:\\b(?:FROM|JOIN|UPDATE|INTO)\\s+|,\\s*)(?:" + any + "\\s*\\.\\s*)?(?:" + any +
            "\\s+(?:AS\\s+)?" + name + "|" + name + ")",
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
    QList<TTableName> tables;
    for (auto it = table.globalMatch(FText()); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QString aliased = match.captured(2).remove(u'`');
        tables.append({match.captured(1).remove(u'`'), aliased.isEmpty() ? owner : aliased});
    }
    return tables;
}

TAppCodeCompleteUtils::TAppCodeCompleteUtils(TDbmManager *manager) : FManager(manager) {}

TCodeCompletion *
TAppCodeCompleteUtils::CreateSynEditCodeCompleteManager(TTextEditor *editor,
                                                        std::function<QString()> usedDatabase)
{
    auto *completion = new TCodeCompletion(editor);
    TSynEditCodeCompleteManager &manager = completion->Manager();
    manager.AppendManager(&FSchemaObjects);
    manager.AppendManager(&FQueryStatements);
    manager.AppendManager(&FReservedWords);
    manager.AppendManager(&FFunctions);
    manager.AppendLiveSource(std::make_unique<TAppLoadedNamesCodeCompleteSource>(
        FManager, std::move(usedDatabase), [editor] { return editor->Text(); }, &FReservedWords));
    return completion;
}
