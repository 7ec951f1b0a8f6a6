#pragma once

#include "client/uMemoryBudget.h"

#include <QByteArrayView>
#include <cstdint>
#include <memory>
#include <vector>

/// Rows as they come from the server, at the price of their bytes: blocks of up to 2 MiB, each row
/// the end offsets of its fields and their bytes back to back, one pointer per row. NULL is the
/// offset's highest bit. Growing may raise std::bad_alloc; the rows held so far stay whole.
class TRowArena
{
public:
    void Clear();
    void SetFieldCount(int count) { FFieldCount = count; }
    int FieldCount() const { return FFieldCount; }
    qint64 RowCount() const { return static_cast<qint64>(FRows.size()); }
    /// Bytes that the arena may hold at most; 0 stands for what the machine has free.
    void SetMemoryLimit(qint64 bytes) { FBudget.SetLimit(bytes); }

    /// Appends a row. `cells` are FieldCount pointers, nullptr for NULL; `lengths` their bytes.
    void Append(const char *const *cells, const unsigned long *lengths);
    void Replace(qint64 row, const char *const *cells, const unsigned long *lengths);
    void Remove(qint64 row);

    bool IsNull(qint64 row, int field) const;
    QByteArrayView Cell(qint64 row, int field) const; // empty for NULL
    /// Bytes of the blocks and of the index.
    qint64 MemoryBytes() const;

private:
    struct TUnmap
    {
        size_t Size;
        void operator()(char *data) const;
    };
    using TBlock = std::unique_ptr<char, TUnmap>;

    static uint32_t OffsetAt(const char *row, int field);
    char *Allocate(size_t size);
    void AddBlock(size_t size);
    char *Store(const char *const *cells, const unsigned long *lengths);

    int FFieldCount = 0;
    std::vector<TBlock> FBlocks;
    char *FNext = nullptr; // free part of the last common block
    char *FEnd = nullptr;
    size_t FNextBlockSize = 0;
    std::vector<char *> FRows;
    qint64 FBlockBytes = 0;
    TMemoryBudget FBudget;
};
