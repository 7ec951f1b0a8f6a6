#include "client/uRowArena.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <sys/mman.h>

namespace {

// Most answers are small, so the first block is too, and comes from the heap: a mapping would cost
// more than their rows. The blocks of a long one reach the size of a
// huge page: taking memory page by page costs more than copying the rows into it.
constexpr size_t FirstBlock = 16 * 1024;
constexpr size_t HugePage = 2 * 1024 * 1024;
constexpr size_t LargestBlock = HugePage;
constexpr uint32_t NullBit = 0x80000000u;
constexpr size_t OffsetSize = sizeof(uint32_t);

char *FromHeap(size_t size)
{
    void *const data = std::malloc(size);
    if (!data)
        throw std::bad_alloc();
    return static_cast<char *>(data);
}

char *Map(size_t size)
{
    void *data = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (data == MAP_FAILED)
        throw std::bad_alloc();
    return static_cast<char *>(data);
}

// One huge page where the system has them; the same bytes in small pages where not.
char *MapHugePage()
{
    char *const data = Map(2 * HugePage);
    const size_t before = (HugePage - reinterpret_cast<uintptr_t>(data) % HugePage) % HugePage;
    if (before > 0)
        ::munmap(data, before);
    ::munmap(data + before + HugePage, HugePage - before);
    ::madvise(data + before, HugePage, MADV_HUGEPAGE);
    return data + before;
}

} // namespace

// Large blocks are mapped and not from the heap, so that a closed result goes back to the system at
// once and does not leave holes that the next one cannot use.
void TRowArena::TUnmap::operator()(char *data) const
{
    if (Size == FirstBlock)
        std::free(data);
    else
        ::munmap(data, Size);
}

void TRowArena::Clear()
{
    FRows = std::vector<char *>(); // an empty list would keep the capacity
    FBlocks.clear();
    FNext = FEnd = nullptr;
    FNextBlockSize = 0;
    FBlockBytes = 0;
    FBudget.Clear();
}

void TRowArena::AddBlock(size_t size)
{
    FBudget.Claim(MemoryBytes(), static_cast<qint64>(size));
    TBlock block(size == FirstBlock ? FromHeap(size)
                 : size == HugePage ? MapHugePage()
                                    : Map(size),
                 TUnmap{size});
    FBlocks.push_back(std::move(block));
    FBlockBytes += static_cast<qint64>(size);
}

char *TRowArena::Allocate(size_t size)
{
    if (size > LargestBlock / 2) {
        AddBlock(size);
        return FBlocks.back().get();
    }
    if (static_cast<size_t>(FEnd - FNext) < size) {
        FNextBlockSize = qBound(FirstBlock, FNextBlockSize * 2, LargestBlock);
        while (FNextBlockSize < size)
            FNextBlockSize *= 2;
        AddBlock(FNextBlockSize);
        FNext = FBlocks.back().get();
        FEnd = FNext + FNextBlockSize;
    }
    char *data = FNext;
    FNext += size;
    return data;
}

char *TRowArena::Store(const char *const *cells, const unsigned long *lengths)
{
    // Locals, since the compiler has to expect that copying bytes changes the fields.
    const size_t count = static_cast<size_t>(FFieldCount);
    size_t size = OffsetSize * count;
    for (size_t i = 0; i < count; ++i)
        size += cells[i] ? lengths[i] : 0;
    // A packet holds 1 GiB at most, so an offset always has its highest bit free.
    if (size >= NullBit)
        throw std::bad_alloc();
    char *const row = Allocate(size);
    char *offset = row;
    char *const data = row + OffsetSize * count;
    uint32_t end = 0;
    for (size_t i = 0; i < count; ++i, offset += OffsetSize) {
        const char *cell = cells[i];
        const size_t length = cell ? lengths[i] : 0;
        if (length > 0)
            std::memcpy(data + end, cell, length);
        end += static_cast<uint32_t>(length);
        const uint32_t mark = cell ? end : end | NullBit;
        std::memcpy(offset, &mark, OffsetSize);
    }
    return row;
}

void TRowArena::Append(const char *const *cells, const unsigned long *lengths)
{
    if (FRows.size() == FRows.capacity())
        FRows.reserve(qMax<size_t>(64, FRows.size() * 2));
    FRows.push_back(Store(cells, lengths));
}

// The bytes of the old row stay behind until the arena is cleared: edits are few, rows are many.
void TRowArena::Replace(qint64 row, const char *const *cells, const unsigned long *lengths)
{
    FRows[static_cast<size_t>(row)] = Store(cells, lengths);
}

void TRowArena::Remove(qint64 row)
{
    FRows.erase(FRows.begin() + static_cast<ptrdiff_t>(row));
}

uint32_t TRowArena::OffsetAt(const char *row, int field)
{
    uint32_t offset;
    std::memcpy(&offset, row + OffsetSize * static_cast<size_t>(field), OffsetSize);
    return offset;
}

bool TRowArena::IsNull(qint64 row, int field) const
{
    return (OffsetAt(FRows[static_cast<size_t>(row)], field) & NullBit) != 0;
}

QByteArrayView TRowArena::Cell(qint64 row, int field) const
{
    const char *data = FRows[static_cast<size_t>(row)];
    const uint32_t end = OffsetAt(data, field);
    if (end & NullBit)
        return {};
    const uint32_t start = field == 0 ? 0 : OffsetAt(data, field - 1) & ~NullBit;
    const char *bytes = data + OffsetSize * static_cast<size_t>(FFieldCount);
    return {bytes + start, static_cast<qsizetype>(end - start)};
}

qint64 TRowArena::MemoryBytes() const
{
    return FBlockBytes + static_cast<qint64>(FRows.capacity() * sizeof(char *));
}
