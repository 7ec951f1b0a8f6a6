#pragma once

#include "client/uMyQuery.h"
#include "uTestDatabase.h"

/// A session of the product's own on the test's database.
class TToolsTest : public TServerTest
{
protected:
    void SetUp() override
    {
        FConnection.Server = Server().Host();
        FConnection.Port = Server().Port();
        FConnection.Username = Server().User();
        FConnection.Password = Server().Password();
        FConnection.Database = Database().Name();
        FConnection.Options.Charset = "utf8mb4";
        FConnection.Options.UseUnicode = true;
    }
    std::unique_ptr<TMyQuery> Open(const QString &sql)
    {
        auto query = std::make_unique<TMyQuery>(&FConnection);
        query->SetSQL(sql);
        query->Execute();
        return query;
    }

    TMyConnection FConnection;
};

/// Counts what a bound grid would hear of.
class TCountingLink : public TDataLink
{
public:
    explicit TCountingLink(TDataSet &dataset) : FDataset(dataset) { FDataset.AddLink(this); }
    ~TCountingLink() override { FDataset.RemoveLink(this); }
    void CursorMoved() override { ++Moves; }
    int Moves = 0;

private:
    TDataSet &FDataset;
};
