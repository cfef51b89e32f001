#include "AskingAllTest.h"

#include "Clock.h"
#include "FakeTask.h"
#include "SchedulerAccess.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int DAY_S = 86400;
constexpr int LINES = 40;
constexpr int PASSES = 25;
constexpr int SMALL_S = 22; // beyond what a pass looks at

// The first stop that is due before soon, by a visit of the whole list.
const Action* StopOf(const Action& play, ActionList& far, QTime soon)
{
    const auto stop = std::ranges::find_if(far, [&](const auto& action) {
        const Task& task = *action->m_task;
        return task.m_type == TASK_STOP_PLAYLIST && !task.m_identifier.isEmpty() &&
               task.m_identifier == play.m_task->m_identifier && play.m_startTime < action->m_startTime &&
               soon > action->m_startTime;
    });
    return stop != far.end() ? stop->get() : nullptr;
}

QStringList TakeMessages()
{
    QStringList messages = LogRecorder::Messages();
    LogRecorder::Clear();
    return messages;
}

QStringList Lines(const ActionList& list)
{
    QStringList lines;
    for (const auto& action : list)
        lines.append(QString::number(action->m_lineNumber));
    return lines;
}

} // namespace

// What the pass is to log for an action that is early, in place of itself.
QStringList AskingAllTest::Shown(const Action& action)
{
    const Task& task = *action.m_task;
    const QTime soon = Clock::TimeOfDay().addSecs(10);
    const Action* const stop =
        task.m_type == TASK_PLAY_PLAYLIST ? StopOf(action, SchedulerAccess::FarActions(Engine()), soon) : nullptr;
    if (stop == nullptr)
        return {u"EARLY action found: %1 (%2)"_s.arg(static_cast<int>(task.m_type)).arg(task.GetName())};
    ++m_counts.skipped;
    return {u"TASK_STOP_PLAYLIST: %1 | NOW+10s: %2"_s.arg(stop->m_startTime.toString(u"HH:mm:ss"_s),
                                                          soon.toString(u"HH:mm:ss"_s)),
            u"VIRTUALLY STOPPED action found: %1 (%2, %3), SKIPPED and marked COMPLETED"_s
                .arg(static_cast<int>(task.m_type))
                .arg(task.GetName(), task.m_identifier)};
}

// The records of a pass that asks everybody, and behind them the lines of the two lists after it.
QStringList AskingAllTest::AskAll()
{
    QStringList records;
    QStringList far;
    QStringList early = Lines(SchedulerAccess::EarlyActions(Engine()));
    LogRecorder::Clear();
    const bool isSteady = Clock::IsSteady(Clock::Read());
    for (const auto& action : SchedulerAccess::FarActions(Engine()))
    {
        const QString line = QString::number(action->m_lineNumber);
        if (!action->IsEarly())
        {
            far.append(line);
            continue;
        }
        ++m_counts.early;
        m_counts.forced += action->m_forced ? 1 : 0;
        m_counts.late += !action->m_forced && !action->IsAhead() ? 1 : 0;
        m_counts.unsteady += isSteady ? 0 : 1;
        const QStringList shown = Shown(*action);
        records += TakeMessages() + shown;
        (shown.size() == 1 ? early : far).append(line);
    }
    return records + QStringList{far.join(u' '), early.join(u' ')};
}

void AskingAllTest::ComparePass()
{
    const QStringList expected = AskAll();
    LogRecorder::Clear();
    CheckFar();
    QStringList found = TakeMessages();
    found = found.mid(found.lastIndexOf(u"----------------------------"_s) + 1);
    found.removeIf([](const QString& text) { return text.startsWith("MISSED action"_L1); });
    found += QStringList{Lines(SchedulerAccess::FarActions(Engine())).join(u' '),
                         Lines(SchedulerAccess::EarlyActions(Engine())).join(u' ')};
    QCOMPARE(found, expected);
}

// Around now, or half an hour, an hour or a day away; now and then anywhere.
QByteArray AskingAllTest::RandomStart()
{
    if (Below(12) == 0)
        return OneOf<const char*>({"25:00:00", "-1:00:00", "07:60:05", "24:00:00", "00:00:00", "12:00:-3", "x:y:z"});
    int second = QTime(0, 0).secsTo(Clock::TimeOfDay()) + OneOf({0, 0, 0, 0, 1800, -1800, 3600, -3600, DAY_S, -DAY_S}) +
                 Below(2 * SMALL_S) - SMALL_S;
    if (Below(10) == 0)
        second = Below(DAY_S);
    const bool isOdd = Below(8) == 0;
    if (!isOdd)
        second = (second % DAY_S + DAY_S) % DAY_S;
    return QStringLiteral("%1:%2:%3")
        .arg(second / 3600 - (isOdd ? 1 : 0), 2, 10, QLatin1Char('0'))
        .arg(second / 60 % 60 + (isOdd ? 60 : 0), 2, 10, QLatin1Char('0'))
        .arg(second % 60, 2, 10, QLatin1Char('0'))
        .toLatin1();
}

QByteArray AskingAllTest::RandomDays()
{
    return Below(4) != 0 ? QByteArray("1111111") : QByteArray::number(Below(128), 2).rightJustified(7, '0');
}

QByteArrayList AskingAllTest::RandomLines()
{
    QByteArrayList lines;
    for (int i = 0; i < LINES; ++i)
    {
        const QByteArray spot = Below(5) == 0 ? QByteArray::number(1 + Below(31)) + "|*|*||" : QByteArray("*|*|*||");
        const QByteArray task =
            OneOf<const char*>({"Volume|1", "Light|1", "PlayMessage|a", "PlayRadioFm|87.5", "StopMessage",
                                "PlayPlaylist|long,-1,x", "PlayPlaylist|short,-1,y", "PlayPlaylist|endless,-1,x",
                                "PlayPlaylist|single,-1,z", "StopPlaylist|x", "StopPlaylist|y", "StopPlaylist"});
        lines.append(RandomDays() + '|' + RandomStart() + '|' + spot + '|' + task);
    }
    return lines;
}

void AskingAllTest::DisturbTask()
{
    ActionList& far = SchedulerAccess::FarActions(Engine());
    if (far.Size() == 0)
        return;
    Task& task = *(*std::next(far.begin(), Below(far.Size())))->m_task;
    auto* const fake = dynamic_cast<FakeTask*>(&task);
    switch (Below(3))
    {
    case 0: task.m_running = !task.m_running; break;
    case 1: task.SetCompleted(Below(2) == 0); break;
    default:
        if (fake != nullptr)
            fake->m_tolerance_s = OneOf({0U, 5U, 300U, 3700U, 86399U, 86400U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU});
    }
}

void AskingAllTest::Disturb()
{
    for (int i = Below(4); i > 0; --i)
        DisturbTask();
    switch (Below(16))
    {
    case 0: Time().Step_s(Below(7200) - 3600); break;
    case 1: Time().Step_s(OneOf({-DAY_S, DAY_S, -3600, 3600, -1800, 1800})); break;
    case 2: Time().Advance_s(Below(3600)); break;
    case 3: Time().Step_s(Below(20) - 10); break;
    case 4: Engine().Reload(); break;
    case 5:
        Data().WriteSchedule(RandomLines().join('\n') + '\n');
        Engine().Reload();
        break;
    case 6: Time().Advance_s(DAY_S - 3); break;
    default: Time().Advance_ms(OneOf({3000, 3000, 3000, 200, 1, 2999})); break;
    }
    for (int i = Below(3); i > 0; --i)
        CheckEarly();
}

void AskingAllTest::CompareAround(const QList<QDateTime>& moments, int schedules, quint32 seed)
{
    m_random.seed(seed);
    m_counts = {};
    Data().WritePlaylist("first.mp3;60\nsecond.mp3;30\nthird.mp3;45\n", u"short"_s);
    Data().WritePlaylist("first.mp3;3600\nsecond.mp3;30\nthird.mp3;45\n", u"long"_s);
    Data().WritePlaylist("first.mp3;90000\nsecond.mp3;30\n", u"endless"_s);
    Data().WritePlaylist("first.mp3;45\n", u"single"_s);
    for (int schedule = 0; schedule < schedules; ++schedule)
    {
        const QDateTime& moment = moments[schedule % moments.size()];
        Time().SetUtc_ms(moment.toMSecsSinceEpoch() + OneOf({0, 0, 0, 1, -1, 24, -24}) * 3600'000 +
                         OneOf({0, 0, 0, 1, -1}) * 1800'000 - (Below(2) == 0 ? Below(20'000) : Below(60'000) - 30'000));
        StartWith(RandomLines());
        for (int pass = 0; pass < PASSES; ++pass)
        {
            ComparePass();
            if (QTest::currentTestFailed())
            {
                qWarning("schedule %d, pass %d, %s", schedule, pass,
                         qPrintable(Clock::TimeOfDay().toString(u"HH:mm:ss.zzz"_s)));
                return;
            }
            Disturb();
        }
        LogRecorder::Clear();
    }
}
