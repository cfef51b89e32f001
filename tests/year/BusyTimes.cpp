#include "BusyTimes.h"

#include <QFile>
#include <QTime>

#include <ctime>
#include <stdexcept>

namespace
{

constexpr int BEFORE_S = 18;
constexpr int AFTER_S = 6;
constexpr qint64 NEAR_CHANGE_S = 3 * 3600;

} // namespace

BusyTimes::BusyTimes(const QString& schedule)
{
    for (int s = 0; s < AFTER_S; ++s)
        m_seconds.set(static_cast<size_t>(s)); // a day begins
    QFile file(schedule);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no schedule");
    for (const QByteArray& line : file.readAll().split('\n'))
    {
        const QTime start = QTime::fromString(QString::fromLatin1(line.split('|').value(1)));
        for (int s = -BEFORE_S; start.isValid() && s <= AFTER_S; ++s)
            m_seconds.set(static_cast<size_t>((QTime(0, 0).secsTo(start) + s + DAY_S) % DAY_S));
    }
}

void BusyTimes::ReadOffset(qint64 now_ms)
{
    const auto offset_s = [now_ms](qint64 later_s) {
        const std::time_t then = now_ms / 1000 + later_s;
        std::tm parts{};
        ::localtime_r(&then, &parts);
        return qint64{parts.tm_gmtoff};
    };
    m_offset_s = offset_s(NEAR_CHANGE_S);
    m_isNearChange = m_offset_s != offset_s(-NEAR_CHANGE_S);
}

bool BusyTimes::Has(qint64 now_ms) const
{
    return m_isNearChange || m_seconds.test(static_cast<size_t>((now_ms / 1000 + m_offset_s) % DAY_S));
}
