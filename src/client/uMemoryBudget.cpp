#include "client/uMemoryBudget.h"

#include <QByteArray>
#include <QFile>
#include <limits>
#include <new>

namespace {

constexpr qint64 MiB = 1024 * 1024;
// Asking costs some 30 microseconds, reading 64 MiB of rows far above ten milliseconds.
constexpr qint64 CheckEvery = 64 * MiB;
// What the windows, the client library and the desktop beside us need to go on.
constexpr qint64 Reserve = 256 * MiB;
constexpr qint64 Unlimited = std::numeric_limits<qint64>::max();

QByteArray Content(const char *path)
{
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

qint64 MachineAvailable()
{
    const QByteArray text = Content("/proc/meminfo");
    const qsizetype at = text.indexOf("MemAvailable:");
    if (at < 0)
        return Unlimited;
    const QByteArray line = text.mid(at + 13, text.indexOf('\n', at) - at - 13);
    return line.chopped(line.endsWith("kB") ? 2 : 0).trimmed().toLongLong() * 1024;
}

// "max" and the huge number of version 1 both mean that there is no limit.
qint64 GroupAvailable(const char *limitPath, const char *usedPath)
{
    bool ok = false;
    const qint64 limit = Content(limitPath).toLongLong(&ok);
    if (!ok || limit <= 0 || limit >= Unlimited / 2)
        return Unlimited;
    return limit - Content(usedPath).toLongLong();
}

} // namespace

qint64 TMemoryBudget::Available()
{
    return qMin(MachineAvailable(),
                qMin(GroupAvailable("/sys/fs/cgroup/memory.max", "/sys/fs/cgroup/memory.current"),
                     GroupAvailable("/sys/fs/cgroup/memory/memory.limit_in_bytes",
                                    "/sys/fs/cgroup/memory/memory.usage_in_bytes")));
}

void TMemoryBudget::Claim(qint64 held, qint64 more)
{
    if (FLimit > 0) {
        if (held + more > FLimit)
            throw std::bad_alloc();
        return;
    }
    if (held + more <= FChecked)
        return;
    const qint64 step = qMax(more, CheckEvery);
    // Most results are small, and asking would cost more than reading them.
    const bool isFirst = FChecked == 0 && held + more <= CheckEvery;
    if (!isFirst && Available() < step + Reserve)
        throw std::bad_alloc();
    FChecked = held + step;
}
