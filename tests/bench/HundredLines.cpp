#include "HundredLines.h"

#include <QFile>
#include <QTime>

#include <stdexcept>

namespace
{

const QString SCHEDULE = QStringLiteral("schedule.csv");
const QString PLAYLIST = QStringLiteral("music");

constexpr int FIRST_S = 5 * 3600;
constexpr int APART_S = 613;
constexpr int DAY_S = 86400;

// In turn; nothing is still under way when its line is due again.
constexpr const char* TASKS[] = {
    "PlayMessage|gong.mp3,70",
    "Volume|55",
    "PlayPlaylist|music,60,p1",
    "StopPlaylist|p1",
    "Light|40",
    "PlayStream|8554/live,50",
    "StopStream",
    "PlayRadioFm|98.5",
    "StopRadioFm",
    "RecordPhoto|10,3",
    "PlayMessage|closing.mp3",
    "Amplifiers|5",
    "enableAux|1",
    "Lan|1",
    "19|1,1",
};

} // namespace

HundredLines::HundredLines()
{
    QByteArray text;
    for (int i = 0; i < LINES; ++i)
    {
        const QTime start = QTime(0, 0).addSecs((FIRST_S + i * APART_S) % DAY_S);
        text += "1111111|" + start.toString(QStringLiteral("HH:mm:ss")).toLatin1() + "|*|*|*|||" +
                TASKS[static_cast<size_t>(i) % std::size(TASKS)] + '\n';
    }
    Write(SCHEDULE, text);
    Write(PLAYLIST, "first.mp3;0180\nsecond.mp3;0200\nthird.mp3;0190\n");
}

QString HundredLines::Path() const
{
    return m_folder.filePath(SCHEDULE);
}

void HundredLines::Write(const QString& name, const QByteArray& content) const
{
    QFile file(m_folder.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("bench: the schedule cannot be written");
}
