#include "ProcessStart.h"

#include "base/Moment.h"

#include <QFile>

#include <algorithm>
#include <unistd.h>

// Formats: proc(5), /proc/[pid]/stat and /proc/stat.
namespace
{

const QString SYSTEM = QStringLiteral("/proc/stat");
const QByteArray BOOT_FIELD = QByteArrayLiteral("btime ");

// Fields behind the name, which stands in parentheses and may hold any sign. The first is the state.
constexpr int START_FIELD = 19;

QByteArray Content(const QString& name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::optional<qint64> BootSecond()
{
    const QByteArrayList lines = Content(SYSTEM).split('\n');
    const auto line = std::ranges::find_if(lines, [](const QByteArray& each) { return each.startsWith(BOOT_FIELD); });
    return line != lines.end() ? std::optional(line->mid(BOOT_FIELD.size()).toLongLong()) : std::nullopt;
}

} // namespace

std::optional<qint64> ProcessStart::Of_ms(qint64 processId)
{
    const QByteArray content = Content(QStringLiteral("/proc/%1/stat").arg(processId));
    const QByteArrayList fields = content.mid(content.lastIndexOf(')') + 2).split(' ');
    const std::optional<qint64> boot = BootSecond();
    const long ticks = ::sysconf(_SC_CLK_TCK);
    bool isNumber = false;
    const qint64 start = fields.value(START_FIELD).toLongLong(&isNumber);
    if (!boot || !isNumber || ticks <= 0)
        return {};
    return (*boot + start / ticks) * Moment::MS_PER_S;
}
