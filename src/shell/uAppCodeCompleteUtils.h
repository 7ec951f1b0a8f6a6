#pragma once

#include "tools/uCodeComplete.h"

#include <memory>

class TCodeCompletion;
class TDbmManager;
class TTextEditor;

/// The schema's objects as a source of fixed candidates: none. Names of the connection come from
/// TAppLoadedNamesCodeCompleteSource, which follows the lists as they load.
class TAppSchemaObjectsCodeCompleteManager : public TCodeCompleteBaseManager
{
protected:
    void FillItems(QList<TCodeCompleteItem> &) override {}
};

class TAppQueryStatementsCodeCompleteManager : public TJsonCodeCompleteManager
{
public:
    TAppQueryStatementsCodeCompleteManager();
};

class TAppReservedWordsCodeCompleteManager : public TJsonCodeCompleteManager
{
public:
    TAppReservedWordsCodeCompleteManager();
};

class TAppFunctionsCodeCompleteManager : public TJsonCodeCompleteManager
{
public:
    TAppFunctionsCodeCompleteManager();
};

/// Names of databases, tables, views, routines and columns, from those lists of a connection that
/// are loaded already. Never asks the server. Behind "table." come the columns of that table, also
/// when "table" is what a statement of the text calls it.
class TAppLoadedNamesCodeCompleteSource : public TCodeCompleteLiveSource
{
public:
    using TText = std::function<QString()>;

    /// `manager` and `reservedWords` are not owned; a name that is one of the words comes in
    /// backticks where it must. `usedDatabase` gives the database that names without one belong to,
    /// or nothing; `text` that of the editor.
    TAppLoadedNamesCodeCompleteSource(TDbmManager *manager, TText usedDatabase, TText text,
                                      TCodeCompleteBaseManager *reservedWords);

    void Suggest(const QString &path, QList<TCodeCompleteItem> &items) override;

private:
    class TNames;
    struct TTableName
    {
        QString Database; // empty when it is written without one
        QString Table;
    };
    QList<TTableName> TablesOf(const QString &owner) const;

    TDbmManager *FManager;
    TCodeCompleteBaseManager *FReservedWords;
    const TText FUsedDatabase, FText;
};

/// The sources of one workspace, and the completion of its editors.
class TAppCodeCompleteUtils
{
public:
    explicit TAppCodeCompleteUtils(TDbmManager *manager); // not owned

    void SetParams(TDbmManager *manager) { FManager = manager; }
    /// Gives an editor its completion, which the editor owns. The sources must outlive it.
    TCodeCompletion *CreateSynEditCodeCompleteManager(TTextEditor *editor,
                                                      std::function<QString()> usedDatabase);

private:
    TDbmManager *FManager;
    TAppSchemaObjectsCodeCompleteManager FSchemaObjects;
    TAppQueryStatementsCodeCompleteManager FQueryStatements;
    TAppReservedWordsCodeCompleteManager FReservedWords;
    TAppFunctionsCodeCompleteManager FFunctions;
};
