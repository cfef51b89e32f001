#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

// A request, and when it came, in milliseconds since 1970.
struct Request
{
    qint64 time_ms;
    QString text; // "sound.PlayFile ss gong.mp3 08:30:00"
};

// What a schedule has to ask for, worked out by a program that shares nothing with the engine.
class ExpectedRequests final
{
public:
    // zone: as in the variable TZ. folder: with schedule.csv and its playlists. from, to: the first and the last local
    // date, as ISO texts. loads_ms: when the schedule is loaded. Throws std::runtime_error when there is no answer.
    ExpectedRequests(const QString& zone, const QString& folder, const QString& from, const QString& to,
                     const QList<qint64>& loads_ms);

    // Meets the expected requests with found, which come after those of earlier calls. Each has to be expected, once
    // and within its time; those whose times overlap may come in any order.
    void Meet(const QList<Request>& found);

    // Empty when all were met and no other came, otherwise a text for people.
    [[nodiscard]] QByteArray Difference() const;

    // The texts of those whose first millisecond is in that time, the last one not included.
    [[nodiscard]] QStringList Between(qint64 from_ms, qint64 to_ms) const;

    [[nodiscard]] qsizetype Count() const { return m_expected.size(); }

    // The latest that a request came after its first millisecond.
    [[nodiscard]] qint64 Latest_ms() const { return m_latest_ms; }

private:
    struct Expected
    {
        qint64 first_ms;
        qint64 last_ms;
        QString text;
        bool isMet = false;
    };

    bool Meet(const Request& request);

    QList<Expected> m_expected; // by their first millisecond
    qsizetype m_past = 0;       // those before it are met, or can no longer be
    qint64 m_latest_ms = 0;
    QStringList m_unexpected;
};
