#include "RandomSchedule.h"
#include "Suite.h"
#include "commands/diff/ScheduleDiff.h"
#include "engine/Rehearsal.h"
#include "engine/RehearsalResult.h"
#include "engine/RunUp.h"
#include "engine/Workspace.h"

#include <QFile>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

// A diff of schedules that differ by little, compared with plain lists of all their requests.
class DiffComparedTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void NothingIsToldOnlyWhereAllRequestsAreTheSame();
};

namespace
{

constexpr qint64 DAY_MS = 86'400'000;
constexpr int DAYS = 2;

// A schedule's rehearsal, with plain lists of what it asks for.
struct Rehearsed
{
    RehearsalResult run;
    EndState inForce;
    TaskPhrases::Map phrases;
    QStringList all;    // also before the span
    QStringList inSpan; // of starts in it
};

Rehearsed Rehearse(const QString& path, const QString& playlists, qint64 from_ms)
{
    const Workspace workspace(path, playlists);
    Rehearsed result{{path, from_ms, from_ms + DAYS * DAY_MS}, {}, TaskPhrases::Of(workspace, path), {}, {}};
    result.run.lines = ScheduleLine::ReadFile(workspace, path);
    const qint64 start_ms = RunUp(result.run.lines).Before(from_ms, result.run.end_ms).moment_ms;
    Rehearsal rehearsal(workspace,
                        {.start_ms = start_ms, .from_ms = from_ms, .until_ms = result.run.end_ms, .isSettled = true});
    const auto text = [](const Request& request) { return u"%1 "_s.arg(request.moment_ms) + request.Text(); };
    rehearsal.SetRequested([&](const Request& request, bool isByChance) {
        result.all.append(text(request));
        result.inForce.Take(request, isByChance);
    });
    if (!rehearsal.Run())
        qFatal("no rehearsal");
    result.run.events = rehearsal.TakeEvents();
    for (const Event& event : result.run.events)
    {
        for (const Request& request : event.requests)
        {
            if (std::max(event.due_ms, event.moment_ms) >= from_ms)
                result.inSpan.append(text(request));
        }
    }
    return result;
}

// With all starts within three seconds, where their order matters.
QByteArray Crowded(const QByteArray& schedule)
{
    QByteArrayList lines = schedule.trimmed().split('\n');
    for (qsizetype i = 0; i < lines.size(); ++i)
    {
        QByteArrayList fields = lines[i].split('|');
        if (fields.size() < 2)
            continue;
        fields[1] = "12:00:0" + QByteArray::number(i % 3);
        lines[i] = fields.join('|');
    }
    return lines.join('\n') + '\n';
}

QString Written(const RandomSchedule& schedule, const char* name, const QByteArray& text)
{
    QFile file(schedule.Folder() + u'/' + QLatin1String(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        qFatal("no schedule");
    return file.fileName();
}

// Something that a planner does to a schedule, or a slip of the hand.
QByteArray Changed(const QByteArray& schedule, std::mt19937& random)
{
    const auto below = [&](qsizetype bound) {
        return static_cast<qsizetype>(random() % static_cast<std::uint32_t>(bound));
    };
    QByteArrayList lines = schedule.trimmed().split('\n');
    QByteArray& line = lines[below(lines.size())];
    switch (below(11))
    {
    case 9: // of crowded ones, starts of the same second
    case 10: lines.swapItemsAt(0, std::min<qsizetype>(3, lines.size() - 1)); break;
    case 0: lines.swapItemsAt(below(lines.size()), below(lines.size())); break;
    case 1: lines.append(line); break;
    case 2: lines.removeOne(QByteArray(line)); break;
    case 3: line.replace("|0", "|"); break;    // a time of one digit
    case 4: line.replace(":3", ":4"); break;   // another time
    case 5: line.replace(",50", ",60"); break; // another volume
    case 6: line.replace("|55", "|56"); break; // the same
    case 7: line.replace("1111111|", "1111110|"); break;
    default: line.prepend("# a comment\n"); break;
    }
    return lines.join('\n') + '\n';
}

} // namespace

void DiffComparedTest::NothingIsToldOnlyWhereAllRequestsAreTheSame()
{
    int same = 0;
    int different = 0;
    for (std::uint32_t seed = 0; seed < OZNA_SEEDS; ++seed)
    {
        const RandomSchedule schedule(seed, 14);
        std::mt19937 random(seed);
        const QByteArray old = seed % 2 == 0 ? schedule.Text() : Crowded(schedule.Text());
        const QByteArray text = Changed(old, random);
        const qint64 from_ms = schedule.Start_ms() / 1000 * 1000;
        const Rehearsed before = Rehearse(Written(schedule, "old.csv", old), schedule.Folder(), from_ms);
        const Rehearsed after = Rehearse(Written(schedule, "new.csv", text), schedule.Folder(), from_ms);
        const QString told =
            ScheduleDiff::Text({before.run, before.inForce, before.phrases}, {after.run, after.inForce, after.phrases});
        const QByteArray what = "seed " + QByteArray::number(seed) + '\n' + old + "---\n" + text + told.toUtf8();
        if (before.inSpan != after.inSpan)
        {
            ++different;
            QVERIFY2(!told.isEmpty(), what.constData());
        }
        else if (before.all == after.all)
        {
            ++same;
            QVERIFY2(told.isEmpty(), what.constData());
        }
        // Back again it is as much.
        QCOMPARE(
            ScheduleDiff::Text({after.run, after.inForce, after.phrases}, {before.run, before.inForce, before.phrases})
                .isEmpty(),
            told.isEmpty());
    }
    QVERIFY2(same > OZNA_SEEDS / 5 && different > OZNA_SEEDS / 10,
             qPrintable(u"%1 same, %2 different"_s.arg(same).arg(different)));
}

OZNA_CASE(DiffCompared, DiffComparedTest)
#include "tst_DiffCompared.moc"
