#include "Suite.h"
#include "TimeZone.h"
#include "base/Moment.h"
#include "engine/EarlyLoads.h"
#include "engine/Rehearsal.h"
#include "engine/Workspace.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

namespace
{

const QDate FIRST(2024, 5, 15);
constexpr qint64 LATER_MS = 15 * Moment::DAY_MS; // each day of the week comes again

// Lights, radio and playlists, each on some days of the week.
QByteArray RandomText(std::uint32_t seed)
{
    std::mt19937 random(seed);
    const auto below = [&random](int bound) { return static_cast<int>(random() % static_cast<unsigned int>(bound)); };
    static const QByteArrayList TASKS{"Light|0",     "Light|40",         "PlayRadioFm|98.5",
                                      "StopRadioFm", "PlayPlaylist|one", "PlayPlaylist|two"};
    QByteArray text;
    for (int line = 0; line < 6; ++line)
    {
        for (int day = 0; day < 7; ++day)
            text += below(2) == 0 ? '0' : '1';
        const bool isLate = below(2) == 0;
        text += u"|%1:%2:%3|*|*|*|||"_s.arg(isLate ? 23 : below(24), 2, 10, QLatin1Char('0'))
                    .arg(isLate ? 55 + below(5) : below(60), 2, 10, QLatin1Char('0'))
                    .arg(below(60), 2, 10, QLatin1Char('0'))
                    .toLatin1();
        text += TASKS[below(static_cast<int>(TASKS.size()))] + '\n';
    }
    return text;
}

} // namespace

// What a load on another day is said to start too early is what the engine starts then, and never again.
class EarlyLoadsTest final : public QObject
{
    Q_OBJECT
public:
    static void initMain() { Workspace::PrepareProcess(); }

private Q_SLOTS:
    void WhatIsForetoldComesOnce();

private:
    // The dates on which the line starts at another time than its own, from that day on, when the schedule
    // is loaded at load_ms.
    static QList<QDate> Dates(const Workspace& workspace, const EarlyLoads::Early& early, qint64 load_ms);
};

QList<QDate> EarlyLoadsTest::Dates(const Workspace& workspace, const EarlyLoads::Early& early, qint64 load_ms)
{
    const qint64 day_ms = Moment::FromLocal_ms(early.day, QTime(0, 0));
    Rehearsal rehearsal(workspace, {load_ms, day_ms, day_ms + LATER_MS});
    if (!rehearsal.Run())
        qFatal("not run to its end");
    QList<QDate> dates;
    for (const Event& event : rehearsal.Events())
    {
        if (event.kind == EventKind::START && event.lineNumber == early.line && event.moment_ms >= day_ms &&
            (event.isForced || event.delay_s > 0))
            dates.append(Moment::LocalDate(event.moment_ms));
    }
    return dates;
}

void EarlyLoadsTest::WhatIsForetoldComesOnce()
{
    const TimeZone here("Europe/Rome");
    int foretold = 0;
    for (std::uint32_t seed = 0; seed < 60; ++seed)
    {
        const QTemporaryDir folder;
        const auto write = [&folder](const QString& name, const QByteArray& content) {
            QFile file(folder.filePath(name));
            if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
                qFatal("no file");
        };
        const QByteArray text = RandomText(seed);
        write(u"schedule.csv"_s, text);
        write(u"one"_s, "first.mp3;120\nsecond.mp3;60\n");
        write(u"two"_s, "first.mp3;240\nsecond.mp3;60\n");
        const Workspace workspace(folder.filePath(u"schedule.csv"_s), folder.path());
        const std::vector<ScheduleLine> lines = ScheduleLine::ReadFile(workspace, u"schedule.csv"_s);
        for (const EarlyLoads::Early& early : EarlyLoads::Of(lines, FIRST))
        {
            const Action& action = *lines[static_cast<size_t>(early.line) - 1].action;
            QDate other = early.day.addDays(-1);
            while (action.IsDueOn(other))
                other = other.addDays(-1);
            // Of a playlist the load comes after its time of that evening.
            const QTime time = QTime(0, 0).addSecs(early.from_s);
            const QTime load = early.isPlaylist ? time.addSecs(-600) : time.addSecs(1);
            const QList<QDate> dates = Dates(workspace, early, Moment::FromLocal_ms(other, load));
            QVERIFY2(dates == QList<QDate>{early.day}, text + "line " + QByteArray::number(early.line));
            ++foretold;
        }
    }
    QVERIFY(foretold > 50);
}

OZNA_CASE(EarlyLoads, EarlyLoadsTest)
#include "tst_EarlyLoads.moc"
