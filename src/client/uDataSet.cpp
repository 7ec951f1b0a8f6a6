#include "client/uDataSet.h"

#include "support/uException.h"
#include "support/uFormat.h"

#include <algorithm>

namespace {

// So many names are looked through faster than one is folded and hashed.
constexpr int MostScanned = 32;

} // namespace

TDataSet::TDataSet() = default;

TDataSet::~TDataSet()
{
    const std::vector<TDataLink *> links = std::move(FLinks);
    for (TDataLink *link : links)
        link->DatasetGone();
}

void TDataSet::Close()
{
    if (Active())
        Discard();
}

void TDataSet::Discard()
{
    Reset();
    TellAll();
}

void TDataSet::Reset()
{
    FArena.Clear();
    FFields.clear();
    FFieldIndex.clear();
    FFoundAt.fill(0);
    FChanges.clear();
    FState = dsInactive;
    FRow = -1;
    FEof = FBof = true;
}

void TDataSet::SetFields(std::vector<TFieldInfo> infos)
{
    FFields.clear();
    FFieldIndex.clear();
    FFoundAt.fill(0);
    for (TFieldInfo &info : infos) {
        const int index = FieldCount();
        if (infos.size() > MostScanned && !FFieldIndex.contains(info.Name.toCaseFolded()))
            FFieldIndex.insert(info.Name.toCaseFolded(), index);
        FFields.push_back(std::make_unique<TField>(this, index, std::move(info)));
    }
    FArena.SetFieldCount(FieldCount());
}

void TDataSet::Opened(qint64 row)
{
    FState = dsBrowse;
    FRow = qMin(qMax<qint64>(row, 0), RecordCount() - 1);
    FEof = IsEmpty();
    FBof = FRow <= 0;
    TellAll();
}

void TDataSet::MoveTo(qint64 row)
{
    FRow = row;
    TellMoved();
}

void TDataSet::SetRecNo(qint64 row)
{
    CheckBrowseMode();
    FEof = IsEmpty();
    FBof = IsEmpty();
    MoveTo(IsEmpty() ? -1 : qBound<qint64>(0, row, RecordCount() - 1));
}

void TDataSet::First()
{
    SetRecNo(0);
    FBof = true;
}

void TDataSet::Last()
{
    SetRecNo(RecordCount() - 1);
    FEof = true;
}

void TDataSet::Next()
{
    CheckBrowseMode();
    FBof = IsEmpty();
    if (FRow + 1 >= RecordCount())
        FEof = true;
    else
        MoveTo(FRow + 1);
}

void TDataSet::Prior()
{
    CheckBrowseMode();
    FEof = IsEmpty();
    if (FRow <= 0)
        FBof = true;
    else
        MoveTo(FRow - 1);
}

bool TDataSet::BookmarkValid(TBookmark bookmark) const
{
    return bookmark >= 0 && bookmark < RecordCount();
}

void TDataSet::GotoBookmark(TBookmark bookmark)
{
    if (BookmarkValid(bookmark))
        SetRecNo(bookmark);
}

void TDataSet::DisableControls()
{
    ++FDisabled;
}

void TDataSet::EnableControls()
{
    if (FDisabled == 0 || --FDisabled > 0)
        return;
    const bool rows = std::exchange(FMissedRows, false);
    const bool move = std::exchange(FMissedMove, false);
    if (rows)
        TellAll();
    else if (move)
        TellMoved();
}

TField *TDataSet::FindField(const QString &name) const
{
    if (FieldCount() > MostScanned) {
        const int index = FFieldIndex.value(name.toCaseFolded(), -1);
        return index < 0 ? nullptr : &FieldAt(index);
    }
    const auto isNamed = [&name](const auto &field) {
        const QString &known = field->FieldName();
        return known.size() == name.size() && known.compare(name, Qt::CaseInsensitive) == 0;
    };
    // Texts are laid out at multiples of eight.
    quint8 &place = FFoundAt[(reinterpret_cast<quintptr>(name.constData()) / 8) % FFoundAt.size()];
    // Whichever name was found there, a column of this one is the first that has it.
    if (place > 0 && isNamed(FFields[place]))
        return FFields[place].get();
    const auto found = std::find_if(FFields.begin(), FFields.end(), isNamed);
    if (found == FFields.end())
        return nullptr;
    place = static_cast<quint8>(found - FFields.begin());
    return found->get();
}

TField &TDataSet::FieldByName(const QString &name) const
{
    if (TField *field = FindField(name))
        return *field;
    throw EException(TFormat::Format("Field \"%s\" not found.", {name}));
}

QList<TField *> TDataSet::GetFieldList() const
{
    QList<TField *> list;
    for (const auto &field : FFields)
        list += field.get();
    return list;
}

bool TDataSet::CanModifyField(int index) const
{
    return !FieldAt(index).Info().OrgName.isEmpty() && CanModify();
}

void TDataSet::CheckModify() const
{
    const QString reason = ReadOnlyReason();
    if (!reason.isEmpty())
        throw EException(reason);
}

void TDataSet::Edit()
{
    if (FState == dsEdit || FState == dsInsert)
        return;
    CheckModify();
    if (FRow < 0)
        throw EException("There is no row to edit.");
    FState = dsEdit;
}

void TDataSet::Append()
{
    CheckBrowseMode();
    CheckModify();
    const std::vector<const char *> cells(FFields.size(), nullptr);
    const std::vector<unsigned long> lengths(FFields.size(), 0);
    FArena.Append(cells.data(), lengths.data());
    FState = dsInsert;
    FRow = RecordCount() - 1;
    FEof = FBof = false;
    TellRow(&TDataLink::RowInserted, FRow);
    TellMoved();
}

void TDataSet::Post()
{
    if (FState == dsInsert)
        WriteInsert(FRow, FChanges);
    else if (FState == dsEdit && !FChanges.empty())
        WriteUpdate(FRow, FChanges);
    else if (FState != dsEdit)
        return;
    FState = dsBrowse;
    FChanges.clear();
    TellRow(&TDataLink::RowChanged, FRow);
}

void TDataSet::Cancel()
{
    if (FState != dsEdit && FState != dsInsert)
        return;
    const bool inserted = FState == dsInsert;
    const qint64 row = FRow;
    FState = dsBrowse;
    FChanges.clear();
    if (!inserted) {
        TellRow(&TDataLink::RowChanged, row);
        return;
    }
    FArena.Remove(row);
    FRow = RecordCount() - 1;
    FEof = FBof = IsEmpty();
    TellRow(&TDataLink::RowRemoved, row);
    TellMoved();
}

void TDataSet::Delete()
{
    if (FState == dsInsert) {
        Cancel();
        return;
    }
    Cancel();
    CheckModify();
    if (FRow < 0)
        throw EException("There is no row to delete.");
    const qint64 row = FRow;
    WriteDelete(row);
    FArena.Remove(row);
    FRow = qMin(row, RecordCount() - 1);
    FEof = FBof = IsEmpty();
    TellRow(&TDataLink::RowRemoved, row);
    TellMoved();
}

void TDataSet::CheckBrowseMode()
{
    if (FState == dsEdit || FState == dsInsert)
        Post();
}

void TDataSet::SetFieldValue(int index, const TVariant &value)
{
    if (FState != dsEdit && FState != dsInsert)
        throw EException("The dataset is not in edit mode.");
    const TField &field = FieldAt(index);
    if (!CanModifyField(index))
        throw EException(TFormat::Format("Column \"%s\" cannot be changed.", {field.FieldName()}));
    std::erase_if(FChanges, [index](const auto &change) { return change.first == index; });
    // A cell that was entered and left as it was is no change.
    const bool same = FState == dsEdit && (value == field.ValueAt(FRow) ||
                                           (value.IsString() && !field.IsNullAt(FRow) &&
                                            value.As<QString>() == field.EditTextAt(FRow)));
    if (!same)
        FChanges.emplace_back(index, value);
    TellRow(&TDataLink::RowChanged, FRow);
}

const TVariant *TDataSet::PendingValue(qint64 row, int index) const
{
    if (row != FRow || FChanges.empty())
        return nullptr;
    const auto found = std::find_if(FChanges.begin(), FChanges.end(),
                                    [index](const auto &change) { return change.first == index; });
    return found == FChanges.end() ? nullptr : &found->second;
}

void TDataSet::AddLink(TDataLink *link)
{
    FLinks.push_back(link);
}

void TDataSet::RemoveLink(TDataLink *link)
{
    std::erase(FLinks, link);
}

// A link may take itself off, or another one, while it is told.
template <typename TAction>
void TDataSet::Tell(bool &missed, TAction action)
{
    if (ControlsDisabled()) {
        missed = true;
        return;
    }
    const std::vector<TDataLink *> links = FLinks;
    for (TDataLink *link : links) {
        if (std::find(FLinks.begin(), FLinks.end(), link) != FLinks.end())
            action(*link);
    }
}

void TDataSet::TellAll()
{
    Tell(FMissedRows, [](TDataLink &link) { link.ActiveChanged(); });
}

void TDataSet::TellMoved()
{
    Tell(FMissedMove, [](TDataLink &link) { link.CursorMoved(); });
}

void TDataSet::TellRow(void (TDataLink::*action)(qint64), qint64 row)
{
    Tell(FMissedRows, [=](TDataLink &link) { (link.*action)(row); });
}
