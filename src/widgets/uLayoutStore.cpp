#include "widgets/uLayoutStore.h"

#include <QEvent>
#include <QHash>
#include <QHeaderView>
#include <QSplitter>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <optional>
#include <vector>

namespace {

class TMemoryLayout : public TLayoutBackend
{
public:
    QByteArray Read(const QString &key) override { return FValues.value(key); }
    void Write(const QString &key, const QByteArray &value) override { FValues[key] = value; }

private:
    QHash<QString, QByteArray> FValues;
};

std::unique_ptr<TLayoutBackend> &Backend()
{
    static std::unique_ptr<TLayoutBackend> backend = std::make_unique<TMemoryLayout>();
    return backend;
}

/// Calls back for the chosen kinds of events of the watched object, which owns it.
class TEventWatcher : public QObject
{
public:
    TEventWatcher(QObject *watched, std::initializer_list<QEvent::Type> types,
                  std::function<void()> event)
        : QObject(watched), FTypes(types), FEvent(std::move(event))
    {
        watched->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (std::find(FTypes.begin(), FTypes.end(), event->type()) != FTypes.end())
            FEvent();
        return false;
    }

private:
    const std::vector<QEvent::Type> FTypes;
    const std::function<void()> FEvent;
};

struct TColumnLayout
{
    int Column;
    double Width; // in heights of the font, so that it suits another font as well
};

using TColumnLayouts = std::vector<TColumnLayout>; // from left to right

/// Reads `column:width` pairs. Nothing when the text does not name each of the columns once, as
/// after an update of the program that added one.
std::optional<TColumnLayouts> ParseColumns(const QByteArray &text, int count)
{
    TColumnLayouts result;
    std::vector<bool> seen(size_t(count), false);
    for (const QByteArray &pair : text.split(' ')) {
        const QByteArrayList parts = pair.split(':');
        bool isColumn = false;
        const int column = parts.first().toInt(&isColumn);
        const double width = parts.last().toDouble();
        if (!isColumn || column < 0 || column >= count || seen[size_t(column)] || width <= 0)
            return std::nullopt;
        seen[size_t(column)] = true;
        result.push_back({column, width});
    }
    if (int(result.size()) != count)
        return std::nullopt;
    return result;
}

QByteArray FormatColumns(const QHeaderView &header)
{
    QByteArrayList pairs;
    const double unit = header.fontMetrics().height();
    for (int position = 0; position < header.count(); ++position) {
        const int column = header.logicalIndex(position);
        // The width of a column that is hidden at the moment is not the user's choice.
        const int width = header.isSectionHidden(column) ? header.defaultSectionSize()
                                                         : header.sectionSize(column);
        pairs.append(QByteArray::number(column) + ':' + QByteArray::number(width / unit, 'f', 2));
    }
    return pairs.join(' ');
}

void ApplyColumns(QHeaderView &header, const TColumnLayouts &columns)
{
    const int unit = header.fontMetrics().height();
    for (size_t position = 0; position < columns.size(); ++position) {
        const TColumnLayout &layout = columns[position];
        header.moveSection(header.visualIndex(layout.Column), int(position));
        if (!header.isSectionHidden(layout.Column))
            header.resizeSection(layout.Column, qMax(int(layout.Width * unit + 0.5), 1));
    }
}

void RestoreColumns(QHeaderView &header, const QString &key)
{
    if (header.count() == 0)
        return;
    if (const auto columns = ParseColumns(TLayoutStore::Read(key), header.count()))
        ApplyColumns(header, *columns);
}

} // namespace

void TLayoutStore::Install(std::unique_ptr<TLayoutBackend> backend)
{
    Backend() = backend ? std::move(backend) : std::make_unique<TMemoryLayout>();
}

QByteArray TLayoutStore::Read(const QString &key)
{
    return Backend()->Read(key);
}

void TLayoutStore::Write(const QString &key, const QByteArray &value)
{
    Backend()->Write(key, value);
}

void TLayoutStore::Remember(QSplitter *splitter, const QString &key)
{
    if (const QByteArray state = Read(key); !state.isEmpty())
        splitter->restoreState(QByteArray::fromBase64(state));
    QObject::connect(splitter, &QSplitter::splitterMoved, splitter,
                     [splitter, key] { Write(key, splitter->saveState().toBase64()); });
}

void TLayoutStore::Remember(QHeaderView *header, const QString &key)
{
    RestoreColumns(*header, key);
    QObject::connect(header, &QHeaderView::sectionCountChanged, header,
                     [header, key] { RestoreColumns(*header, key); });
    WhenChanged(header, [header, key] { Write(key, FormatColumns(*header)); });
}

void TLayoutStore::WhenChanged(QHeaderView *header, std::function<void()> changed)
{
    // Widths that the program chooses are not the user's: only the mouse counts, and only when it
    // changed something, since a click sorts. The header acts after the watcher saw the event.
    const auto atPress = std::make_shared<QByteArray>();
    new TEventWatcher(header->viewport(), {QEvent::MouseButtonPress},
                      [header, atPress] { *atPress = FormatColumns(*header); });
    new TEventWatcher(header->viewport(), {QEvent::MouseButtonRelease},
                      [header, atPress, changed = std::move(changed)] {
                          QTimer::singleShot(0, header, [header, atPress, changed] {
                              if (FormatColumns(*header) != *atPress)
                                  changed();
                          });
                      });
}

QHash<QString, int> TLayoutStore::ReadWidths(const QHeaderView &header, const QString &key)
{
    const int unit = header.fontMetrics().height();
    QHash<QString, int> widths;
    for (const QByteArray &pair : Read(key).split(' ')) {
        const QByteArrayList parts = pair.split(':');
        const int width = int(parts.last().toDouble() * unit + 0.5);
        if (parts.size() == 2 && width > 0)
            widths[QString::fromUtf8(QByteArray::fromHex(parts.first()))] = width;
    }
    return widths;
}

void TLayoutStore::WriteWidths(const QHeaderView &header, const QString &key,
                               const QStringList &names)
{
    const double unit = header.fontMetrics().height();
    QByteArrayList pairs;
    for (int column = 0; column < qMin(header.count(), int(names.size())); ++column)
        pairs.append(names[column].toUtf8().toHex() + ':' +
                     QByteArray::number(header.sectionSize(column) / unit, 'f', 2));
    Write(key, pairs.join(' '));
}

void TLayoutStore::Remember(QWidget *window, const QString &key)
{
    if (const QByteArray geometry = Read(key); !geometry.isEmpty())
        window->restoreGeometry(QByteArray::fromBase64(geometry));
    new TEventWatcher(window, {QEvent::Close, QEvent::Hide},
                      [window, key] { Write(key, window->saveGeometry().toBase64()); });
}

bool TLayoutStore::HasLayout(const QHeaderView &header, const QString &key)
{
    return ParseColumns(Read(key), header.count()).has_value();
}
