#include "jobs/uDbmStatementPipe.h"
#include "support/uException.h"

#include <atomic>
#include <gtest/gtest.h>

namespace {

TDbmRowsStatement Statement(qint64 number, qsizetype size = 10)
{
    TDbmRowsStatement statement;
    statement.Offset = number;
    statement.Text = QByteArray(size, 'x');
    return statement;
}

TEST(TDbmStatementPipe, HandsOverInOrderWhateverTheirNumberAndSize)
{
    for (const bool threaded : {false, true}) {
        for (const int count : {0, 1, 2, 3, 200}) {
            std::vector<qint64> seen;
            TDbmStatementPipe pipe(
                [&](const TDbmRowsStatement &statement) {
                    seen.push_back(statement.Offset);
                    return true;
                },
                threaded);
            for (int i = 0; i < count; ++i)
                EXPECT_TRUE(pipe.Put(Statement(i, i % 7 == 3 ? 3 << 20 : 10)));
            EXPECT_TRUE(pipe.Finish());
            ASSERT_EQ(seen.size(), size_t(count));
            for (int i = 0; i < count; ++i)
                EXPECT_EQ(seen[size_t(i)], i);
        }
    }
}

TEST(TDbmStatementPipe, RaisesWhatTheActionRaised)
{
    for (const int failing : {0, 1, 30}) {
        TDbmStatementPipe pipe(
            [&](const TDbmRowsStatement &statement) {
                if (statement.Offset == failing)
                    throw EException("disk full");
                return true;
            },
            true);
        for (int i = 0; i < 40 && pipe.Put(Statement(i)); ++i) {
        }
        try {
            pipe.Finish();
            ADD_FAILURE() << "statement " << failing << " failed";
        } catch (const EException &e) {
            EXPECT_EQ(e.Message(), "disk full");
        }
    }
}

TEST(TDbmStatementPipe, WhatWaitsIsDroppedWithIt)
{
    std::atomic<int> seen = 0;
    {
        TDbmStatementPipe pipe(
            [&](const TDbmRowsStatement &) {
                ++seen;
                return true;
            },
            true);
        pipe.Put(Statement(0));
    }
    EXPECT_EQ(seen, 0) << "the reader failed ahead of the second statement";
}

} // namespace
