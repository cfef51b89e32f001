#pragma once

#include <QString>

#include <bitset>

// The seconds of a day that are near a start of a schedule, or near midnight.
class BusyTimes final
{
public:
    // Throws std::runtime_error when the schedule cannot be read.
    explicit BusyTimes(const QString& schedule);

    // Looks for a change of the clocks within three hours before and after now. Good for minutes.
    void ReadOffset(qint64 now_ms);

    // Whether the clock on the wall is near a start, or the clocks are changed within some hours.
    [[nodiscard]] bool Has(qint64 now_ms) const;

private:
    static constexpr int DAY_S = 86400;

    std::bitset<DAY_S> m_seconds;
    qint64 m_offset_s = 0; // of local time from UTC
    bool m_isNearChange = false;
};
