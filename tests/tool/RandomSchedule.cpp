#include "RandomSchedule.h"

#include "KindTable.h"

#include <QDateTime>
#include <QFile>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace
{

constexpr int DAY_S = 86400;
constexpr int HOUR_S = 3600;

const QString SCHEDULE = u"schedule.csv"_s;

constexpr const char* DATES[] = {
    "2024-02-28", "2024-03-09", "2024-03-30", "2024-04-06", "2024-05-15", "2024-09-28",
    "2024-10-26", "2024-11-02", "2024-12-31", "2027-03-13", "2038-01-18",
};

// Name, then content.
constexpr const char* PLAYLISTS[][2] = {
    {"short", "a.mp3;0010\nb.mp3;0020\n"},
    {"long", "first.mp3;1700\nsecond.mp3;3600\nthird.mp3;5400\n"},
    {"night", "evening.mp3;20000\nnight.mp3;30000\n"},
    {"odd", "back.mp3;-500\nnothing.mp3;0\nword.mp3;abc\nlast.mp3;30\n"},
    {"one", "a single track.mp3;600\n"},
};

// The tasks that are asked for without a playlist, a message or a time of their own.
constexpr const char* TASKS[] = {
    "Light|40",        "Light|0",          "Volume|55",       "PlayRadioFm|98.5",
    "PlayRadioFm|0",   "StopRadioFm",      "PlayStream|1/a",  "PlayStream|b,5",
    "StopStream",      "StopMessage",      "enableAux|1",     "enableAux|0",
    "Amplifiers|5",    "Camera|1",         "Gps|0",           "Lan|1",
    "RecordPhoto",     "RecordPhoto|10,3", "RecordPhoto|0,0", "SetCpuFreq|200",
    "19|1,1",          "19|2,1",           "Volume|loud",     "StopPlaylist",
    "StopPlaylist|p1", "StopPlaylist|p2",  "EnableAux|1",     "3",
    "Light",
};

constexpr const char* PLAYS[] = {
    "PlayMessage|gong.mp3,70",    "PlayMessage|gong.mp3",       "PlayPlaylist|short,50,p1", "PlayPlaylist|long,50,p1",
    "PlayPlaylist|long,,p2",      "PlayPlaylist|night,20,p2",   "PlayPlaylist|odd",         "PlayPlaylist|one,50,p1",
    "PlayPlaylist|missing,50,p1", "PlayPlaylist|short,50,solo",
};

constexpr const char* ODD_TIMES[] = {"00:00:00", "00:00:01", "00:00:02", "23:59:59", "24:00:00", "24:00:05",
                                     "25:00:00", "8:5:00",   "02:30:00", "01:30:00", "-1:30:00", "12:00:75"};

constexpr const char* TAME_TIMES[] = {"02:30:00", "05:45:10", "07:30:00", "12:00:00", "18:45:30", "23:20:00"};

constexpr const char* TAME_TASKS[] = {
    "PlayMessage|gong.mp3,70",
    "PlayMessage|gong.mp3",
    "PlayPlaylist|short,50,p1",
    "PlayPlaylist|long,50,p2",
    "PlayPlaylist|night",
    "PlayPlaylist|one,50,p1",
    "StopPlaylist|p1",
    "StopPlaylist",
    "Light|40",
    "Light|0",
    "Volume|55",
    "PlayRadioFm|98.5",
    "PlayRadioFm|0",
    "StopRadioFm",
    "StopMessage",
    "enableAux|1",
    "enableAux|0",
    "Amplifiers|5",
    "Camera|1",
    "Gps|0",
    "Lan|1",
    "RecordPhoto",
    "SetCpuFreq|200",
    "19|1,1",
};

QByteArray TaskOf(const KindRow& kind)
{
    return (*kind.name ? QByteArray(kind.name) : QByteArray::number(kind.number)) + "|1";
}

} // namespace

RandomSchedule::RandomSchedule(std::uint32_t seed, int lines, Manner manner)
    : m_manner(manner)
    , m_random(seed)
{
    for (const auto& [name, content] : PLAYLISTS)
        Write(QString::fromLatin1(name), content);

    const QDateTime midnight = QDateTime::fromString(QString::fromLatin1(OneOf(DATES)), Qt::ISODate);
    m_start_ms = QDateTime(midnight.date(), QTime(0, 0), Qt::UTC).toMSecsSinceEpoch() + Below(DAY_S) * 1000LL;
    m_start_ms += Below(3) == 0 ? 0 : Below(1000);
    m_focus_s = Below(DAY_S);
    const int count = m_manner == TAME ? lines : 1 + Below(lines);
    for (int i = 0; i < count; ++i)
        m_text += Line() + '\n';
    // Each kind has its turn, a new one too.
    if (m_manner == WILD)
        m_text += "1111111|12:00:00|*|*|*|||" + TaskOf(AllKinds()[seed % AllKinds().size()]) + '\n';
    Write(SCHEDULE, m_text);
}

QString RandomSchedule::Path() const
{
    return m_folder.filePath(SCHEDULE);
}

int RandomSchedule::Below(int bound)
{
    // The library's distributions differ from one to the other; a little unevenness does no harm here.
    return static_cast<int>(m_random() % static_cast<std::uint32_t>(bound));
}

QByteArray RandomSchedule::Line()
{
    if (m_manner == WILD && Below(20) == 0)
        return QByteArray(OneOf({"# a comment", "not a line", "1111111|12:00:00|*|*|*|||Volume|5|more", ""}));
    return Days() + '|' + StartTime() + '|' + Dates() + '|' + Task();
}

QByteArray RandomSchedule::Days()
{
    if (Below(2) == 0)
        return "1111111";
    QByteArray days;
    for (int i = 0; i < 7; ++i)
        days += Below(2) == 0 ? '1' : '0';
    return days;
}

QByteArray RandomSchedule::StartTime()
{
    if (m_manner == TAME)
        return OneOf(TAME_TIMES);
    if (Below(12) == 0)
        return OneOf(ODD_TIMES);
    // Most stand close to others.
    const int time_s = Below(3) == 0 ? Below(DAY_S) : (m_focus_s + Below(90) + HOUR_S * Below(6)) % DAY_S;
    return QTime(0, 0).addSecs(time_s).toString(u"HH:mm:ss"_s).toLatin1();
}

QByteArray RandomSchedule::Dates()
{
    if (Below(4) != 0)
        return "*|*|*||";
    const QDate date = QDateTime::fromMSecsSinceEpoch(m_start_ms, Qt::UTC).date().addDays(Below(3) - 1);
    const QByteArray day = Below(2) == 0 ? QByteArray::number(date.day()) : "*";
    const QByteArray month = Below(2) == 0 ? QByteArray::number(date.month()) : "*";
    const QByteArray year = Below(4) == 0 ? QByteArray::number(date.year()) : "*";
    const QByteArray from = Below(3) == 0 ? date.toString(u"yyyyMMdd"_s).toLatin1() : QByteArray();
    const QByteArray to = Below(3) == 0 ? date.addDays(1).toString(u"yyyyMMdd"_s).toLatin1() : QByteArray();
    return day + '|' + month + '|' + year + '|' + from + '|' + to;
}

QByteArray RandomSchedule::Task()
{
    if (m_manner == TAME)
        return OneOf(TAME_TASKS);
    return Below(2) == 0 ? OneOf(PLAYS) : OneOf(TASKS);
}

void RandomSchedule::Write(const QString& name, const QByteArray& content) const
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("random schedule");
}
