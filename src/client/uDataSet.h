#pragma once

#include "client/uField.h"
#include "client/uRowArena.h"
#include "support/uVariant.h"

#include <QHash>
#include <array>
#include <functional>
#include <memory>
#include <vector>

enum TDataSetState { dsInactive, dsBrowse, dsEdit, dsInsert };

/// A grid's or form's hold on a dataset. Implementations must not throw. Registered with
/// TDataSet::AddLink; a dataset that dies calls DatasetGone and forgets its links.
class TDataLink
{
public:
    virtual ~TDataLink() = default;
    virtual void ActiveChanged() {} // opened, closed, refreshed: everything anew
    virtual void CursorMoved() {}
    virtual void RowChanged(qint64 /*row*/) {}
    virtual void RowInserted(qint64 /*row*/) {}
    virtual void RowRemoved(qint64 /*row*/) {}
    virtual void DatasetGone() {}
};

/// A scrollable result: rows in memory, typed fields, a current row. All rows are read on open.
/// Rows are counted from 0. Used by one thread at a time.
class TDataSet
{
public:
    using TBookmark = qint64;
    using TChanges = std::vector<std::pair<int, TVariant>>; // field index and new value

    TDataSet();
    virtual ~TDataSet();
    TDataSet(const TDataSet &) = delete;
    TDataSet &operator=(const TDataSet &) = delete;

    bool Active() const { return FState != dsInactive; }
    TDataSetState State() const { return FState; }
    virtual void Close();
    /// Runs the same statement again; bound grids keep their place where it still exists.
    virtual void Refresh() = 0;

    qint64 RecordCount() const { return FArena.RowCount(); }
    bool IsEmpty() const { return RecordCount() == 0; }
    qint64 RecNo() const { return FRow; } // -1 when there is no current row
    /// Moving posts an open edit first and raises when that fails.
    void SetRecNo(qint64 row); // clamped to the rows there are
    void First();
    void Next();
    void Prior();
    void Last();
    bool Eof() const { return FEof; }
    bool Bof() const { return FBof; }

    TBookmark GetBookmark() const { return FRow; }
    bool BookmarkValid(TBookmark bookmark) const;
    void GotoBookmark(TBookmark bookmark); // does nothing when it is not valid

    /// While disabled, links hear nothing; the last EnableControls tells them once.
    void DisableControls();
    void EnableControls();
    bool ControlsDisabled() const { return FDisabled > 0; }

    const std::vector<std::unique_ptr<TField>> &Fields() const { return FFields; }
    int FieldCount() const { return static_cast<int>(FFields.size()); }
    TField &FieldAt(int index) const { return *FFields[static_cast<size_t>(index)]; }
    /// Blind to letter case; of two columns of one name the first. Raises EException
    /// `Field "x" not found.` when there is none.
    TField &FieldByName(const QString &name) const;
    TField *FindField(const QString &name) const; // nullptr when there is none
    QList<TField *> GetFieldList() const;

    /// Empty when rows can be changed by the dataset itself, else why not. The first call for a
    /// result may ask the server for the table's keys; never raises.
    virtual QString ReadOnlyReason() const = 0;
    bool CanModify() const { return ReadOnlyReason().isEmpty(); }
    /// Whether this cell may be edited in place; a column that shows a length in place of its
    /// content or another expression may not.
    bool CanModifyField(int index) const;
    /// Row editing: Edit or Append, TField::SetValue, Post. Post sends one statement that names the
    /// table, the key and the changed columns, and raises EMyError or EException with the reason
    /// when the server refuses or no row was changed; the edit then stays open. Cancel drops it.
    /// An appended row stands at the end from Append on.
    void Edit();
    void Append();
    void Post();
    void Cancel();
    void Delete();
    /// Posts an open edit; the row stays current.
    void UpdateRecord() { CheckBrowseMode(); }
    void CheckBrowseMode();

    void AddLink(TDataLink *link);
    void RemoveLink(TDataLink *link);

    /// The rows themselves, for exports and grids that walk without moving the current row.
    const TRowArena &Arena() const { return FArena; }
    /// Bytes held by rows and their index.
    qint64 MemoryBytes() const { return FArena.MemoryBytes(); }

protected:
    friend class TField;

    /// Write one change of a row to the server and the row's cells, as they are afterwards, to the
    /// arena. Raise when the server refuses.
    virtual void WriteUpdate(qint64 row, const TChanges &changes) = 0;
    virtual void WriteInsert(qint64 row, const TChanges &changes) = 0;
    virtual void WriteDelete(qint64 row) = 0;

    void SetFields(std::vector<TFieldInfo> infos);
    /// The rows are all there: the first one, or the one that was current, becomes current.
    void Opened(qint64 row = 0);
    /// Drops fields, rows and an open edit. Links hear nothing: the rows that follow tell them.
    void Reset();
    /// The same when no rows follow.
    void Discard();

    TRowArena FArena;

private:
    void MoveTo(qint64 row);
    void CheckModify() const;
    void SetFieldValue(int index, const TVariant &value);
    const TVariant *PendingValue(qint64 row, int index) const;
    template <typename TAction>
    void Tell(bool &missed, TAction action);
    void TellAll();
    void TellMoved();
    void TellRow(void (TDataLink::*action)(qint64), qint64 row);

    std::vector<std::unique_ptr<TField>> FFields;
    QHash<QString, int> FFieldIndex; // by folded name; empty when they are few
    // Where a name was found, by its text's place in memory: the names are mostly literals, and a
    // list asks for the same ones in every row.
    mutable std::array<quint8, 64> FFoundAt{};
    TDataSetState FState = dsInactive;
    qint64 FRow = -1;
    bool FEof = true;
    bool FBof = true;
    int FDisabled = 0;
    bool FMissedMove = false; // what the links have not heard while disabled
    bool FMissedRows = false;
    std::vector<TDataLink *> FLinks;
    TChanges FChanges; // since Edit or Append
};
