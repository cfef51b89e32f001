#include "Engine.h"
#include "Findings.h"
#include "Log.h"
#include "Reading.h"
#include "SchedulerAccess.h"
#include "Target.h"
#include "peers/Peers.h"

#include <QDebug>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

// A schedule file, as the scheduler loads it, and the passes around its starts. Input: the file's content.

namespace
{

// The starts that the clock is taken to, of those in the file.
constexpr int STARTS = 3;
const QByteArray PREFIX = "[Action.cpp:";

// Lives until the process ends: its end would be logged when the log has gone.
Scheduler& TheScheduler()
{
    static Scheduler* const scheduler = new Scheduler(u"schedule.csv"_s);
    return *scheduler;
}

ActionList& FarList()
{
    return SchedulerAccess::FarActions(TheScheduler());
}

ActionList& EarlyList()
{
    return SchedulerAccess::EarlyActions(TheScheduler());
}

QList<Action*> Members(ActionList& list)
{
    QList<Action*> members;
    for (const auto& action : list)
        members.append(action.get());
    return members;
}

int Count(const QList<LogRecord>& log, const char* message)
{
    return static_cast<int>(
        std::ranges::count_if(log, [=](const LogRecord& each) { return Engine::MessageOf(each).startsWith(message); }));
}

// Every action is in one list, once, and none is new or gone.
void CheckOwned(const QSet<Action*>& loaded)
{
    const QList<Action*> members = Members(FarList()) + Members(EarlyList());
    EXPECT_EQUAL(members.size(), loaded.size());
    EXPECT_THAT(QSet<Action*>(members.begin(), members.end()) == loaded, "the same actions");
}

// The lines that reached an action are those of the file that are neither blank nor comments.
void CheckLines(const QByteArray& content, const QList<LogRecord>& log)
{
    const QByteArray said = ">>> Action line: ";
    QByteArrayList wanted = Reading::Lines(content);
    wanted.removeIf(Reading::IsSkipped);
    QByteArrayList found;
    for (const LogRecord& record : log)
    {
        if (record.text.startsWith(PREFIX) && Engine::MessageOf(record).startsWith(said))
            found.append(record.text);
    }
    EXPECT_EQUAL(found.size(), wanted.size());
    for (qsizetype i = 0; i < std::min(found.size(), wanted.size()); ++i)
    {
        const QByteArray whole = found[i].left(found[i].indexOf("] ") + 2) + said + wanted[i];
        EXPECT_THAT(found[i] == whole.left(Log::RECORD_SIZE - 1), found[i]);
    }
}

// last: the line without an end; 0 where there is none.
void CheckCut(int last, const QList<LogRecord>& log)
{
    const QString told = u"Schedule file may be cut: line %1 has no line end"_s.arg(last);
    EXPECT_EQUAL(Count(log, "Schedule file may be cut: "), last > 0 ? 1 : 0);
    EXPECT_EQUAL(Count(log, qPrintable(told)), last > 0 ? 1 : 0);
}

// The state that should be in force: the last to start of the lights, and of the radio unless a stop came later.
QSet<Action*> Forced(const QList<Action*>& actions, QTime now)
{
    const auto last = [&](TaskType type) {
        Action* found = nullptr;
        for (Action* const action : actions)
        {
            const bool hasStarted = action->m_task->m_type == type && !(now < action->m_startTime);
            if (hasStarted && (found == nullptr || found->m_startTime < action->m_startTime))
                found = action;
        }
        return found;
    };
    Action* const radio = last(TASK_PLAY_RADIO_FM);
    const Action* const stop = last(TASK_STOP_RADIO_FM);
    const bool isStopped = radio != nullptr && stop != nullptr && !(stop->m_startTime < radio->m_startTime);
    QSet<Action*> forced{last(TASK_LIGHT), isStopped ? nullptr : radio};
    forced.remove(nullptr);
    return forced;
}

void CheckLoaded(const QByteArray& content, const QList<LogRecord>& log)
{
    const QList<Action*> actions = Members(FarList());
    EXPECT_THAT(EarlyList().Size() == 0, "a new action is far");
    EXPECT_EQUAL(Count(log, ">>> Action line: "), actions.size() + Count(log, "Action ignored"));
    EXPECT_EQUAL(Count(log, qPrintable(u"Schedule loaded (%1 tasks)"_s.arg(actions.size()))), 1);
    EXPECT_EQUAL(Count(log, "Unexpected error"), 0);
    if (Reading::IsPlain(content))
    {
        CheckLines(content, log);
        CheckCut(Reading::CutLine(content), log);
    }
    const QSet<Action*> forced = Forced(actions, QTime(12, 0));
    for (const Action* const action : actions)
        EXPECT_EQUAL(action->m_forced, std::ranges::count(forced, action) == 1);
}

void Pass(const char* slot)
{
    EXPECT_THAT(QMetaObject::invokeMethod(&TheScheduler(), slot, Qt::DirectConnection), slot);
}

void FarPass(const QSet<Action*>& loaded)
{
    const int before = EarlyList().Size();
    Engine::TakeLog();
    Pass("CheckFarActions");
    const QList<LogRecord> log = Engine::TakeLog();
    EXPECT_EQUAL(EarlyList().Size() - before, Count(log, "EARLY action found: "));
    EXPECT_THAT(Engine::TakeRequests().isEmpty(), "looking asks nobody");
    for (Action* const action : Members(EarlyList()).mid(before))
        EXPECT_THAT(action->IsEarly(), "what was moved is early");
    CheckOwned(loaded);
}

void EarlyPass(const QSet<Action*>& loaded)
{
    const int before = EarlyList().Size();
    Engine::TakeLog();
    Pass("CheckEarlyActions");
    const QList<LogRecord> log = Engine::TakeLog();
    const int started = Count(log, "READY action found: ");
    EXPECT_EQUAL(before - EarlyList().Size(), started + Count(log, "LOST action found: "));
    EXPECT_THAT(Engine::TakeRequests().size() <= 2 * started, "two requests a start at most");
    for (const Action* const action : Members(EarlyList()))
        EXPECT_THAT(!action->m_forced, "what is forced does not stay");
    CheckOwned(loaded);
}

// Around some of the starts: before, at, and after.
void CheckPasses(const QSet<Action*>& loaded)
{
    QList<QTime> starts;
    for (const Action* const action : Members(FarList()))
    {
        if (action->m_startTime.isValid() && !starts.contains(action->m_startTime) && starts.size() < STARTS)
            starts.append(action->m_startTime);
    }
    FarPass(loaded);
    EarlyPass(loaded);
    for (const QTime& start : starts)
    {
        Engine::Time().SetLocal(start);
        Engine::Time().Advance_s(-11);
        for (const int step_s : {0, 3, 5, 3, 4})
        {
            Engine::Time().Advance_s(step_s);
            FarPass(loaded);
            EarlyPass(loaded);
        }
        Engine::EmitSignals(u"gong.mp3"_s);
        Engine::TakeRequests();
    }
}

void Stop()
{
    int playing = 0;
    for (const Action* const action : Members(FarList()) + Members(EarlyList()))
        playing += action->m_task->IsRunning() && action->m_task->m_type != TASK_RECORD_PHOTO ? 1 : 0;
    Engine::TakeRequests();
    TheScheduler().Stop();
    const QList<PeerRequest> requests = Engine::TakeRequests();
    EXPECT_EQUAL(requests.size(), playing);
    for (const PeerRequest& request : requests)
        EXPECT_EQUAL(request.method, u"StopPlay"_s);
    EXPECT_THAT(FarList().Size() == 0 && EarlyList().Size() == 0, "nothing is left");
    EXPECT_THAT(!SchedulerAccess::FarTimer(TheScheduler()).isActive(), "no far pass any more");
    EXPECT_THAT(!SchedulerAccess::EarlyTimer(TheScheduler()).isActive(), "no early pass any more");
}

QStringList Shown(const QList<Action*>& actions)
{
    QStringList shown;
    for (const Action* const action : actions)
        shown.append(action->m_task->GetName() + action->m_startTime.toString() + action->m_task->m_identifier);
    return shown;
}

} // namespace

void Target::SetUp()
{
    Engine::SetUp();
    // The scheduler makes its own.
    Peers::DeleteProxies();
    static_cast<void>(TheScheduler());
}

void Target::Run(const QByteArray& input)
{
    Engine::Reset();
    Engine::Data().WriteSchedule(input);
    TheScheduler().Start();
    CheckLoaded(input, Engine::TakeLog());
    EXPECT_THAT(Engine::TakeRequests().isEmpty(), "loading asks nobody");
    const QList<Action*> actions = Members(FarList());
    const QStringList shown = Shown(actions);
    CheckPasses(QSet<Action*>(actions.begin(), actions.end()));
    Stop();

    Engine::Reset();
    TheScheduler().Start();
    EXPECT_EQUAL(Shown(Members(FarList())), shown);
    Stop();
    Engine::ExpectNobodyListens();
}
