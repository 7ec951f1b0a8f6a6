#pragma once

#include <QtGlobal>
#include <vector>

struct st_mysql_field;

/// One row of the prepared-statement protocol, turned into the text that the server would have
/// sent for each cell. The server spends most of a text answer on writing numbers; here that is
/// done beside it.
class TBinaryRow
{
public:
    /// False for a column whose text cannot be told from its binary form.
    static bool CanShow(const st_mysql_field &field);

    /// The fields have to outlive the object.
    TBinaryRow(const st_mysql_field *fields, uint count);

    /// Ahead of the first cell of a row.
    void Start() { FNext = FTexts.data(); }
    /// Takes the cell of a column, nullptr for NULL, and gives the byte behind it. To be called
    /// for each column in their order.
    const uchar *Take(uint column, const uchar *at);

    /// Valid until the next row; text of the server's own is not copied.
    const char *const *Cells() const { return FCells.data(); }
    const unsigned long *Lengths() const { return FLengths.data(); }

private:
    const uchar *TakeInteger(const st_mysql_field &field, const uchar *at, int size);
    const uchar *TakeFloating(const st_mysql_field &field, const uchar *at, int size);
    const uchar *TakeDate(const st_mysql_field &field, const uchar *at);
    const uchar *TakeTime(const st_mysql_field &field, const uchar *at);

    const st_mysql_field *FFields; // not owned
    std::vector<const char *> FCells;
    std::vector<unsigned long> FLengths;
    std::vector<char> FTexts; // of the row's numbers and dates
    char *FNext = nullptr;
};
