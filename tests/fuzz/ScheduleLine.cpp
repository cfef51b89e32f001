#include "Action.h"
#include "ActionRun.h"
#include "Engine.h"
#include "Findings.h"
#include "LineReading.h"
#include "Target.h"

#include <QDebug>

// A line of the schedule, as the action takes it, and the task that it makes. Input: the line.

namespace
{

struct Parsed
{
    std::unique_ptr<Action> action; // null when the line was rejected
    QStringList log;
};

std::unique_ptr<Action> MakeAction(const QString& line)
{
    try
    {
        return std::make_unique<Action>(line);
    }
    catch (const std::exception&)
    {
        return nullptr;
    }
}

Parsed Parse(const QString& line)
{
    Parsed parsed{MakeAction(line), {}};
    const QList<LogRecord> records = Engine::TakeLog();
    for (const LogRecord& record : records)
        parsed.log.append(QString::fromUtf8(record.text));
    // Whoever wonders why a line is ignored finds a reason, and nobody is alarmed by one that is not.
    const bool hasError = !Engine::OfLevel(1, records).isEmpty();
    EXPECT_EQUAL(hasError, parsed.action == nullptr);
    const QList<PeerRequest> requests = Engine::TakeRequests();
    EXPECT_THAT(requests.isEmpty(), requests[0].Shown().toUtf8());
    return parsed;
}

void CheckFields(const Action& action, const LineReading& reading)
{
    EXPECT_EQUAL(action.m_dow, reading.daysMask);
    EXPECT_EQUAL(action.m_hour, reading.hour);
    EXPECT_EQUAL(action.m_minute, reading.minute);
    EXPECT_EQUAL(action.m_second, reading.second);
    EXPECT_EQUAL(action.m_startTime, QTime(reading.hour, reading.minute, reading.second));
    EXPECT_EQUAL(action.m_day, reading.day);
    EXPECT_EQUAL(action.m_month, reading.month);
    EXPECT_EQUAL(action.m_year, reading.year);
    EXPECT_EQUAL(action.m_hasFrom, reading.from.isValid());
    EXPECT_EQUAL(action.m_hasTo, reading.to.isValid());
    EXPECT_THAT(!action.m_hasFrom || action.m_from == reading.from, reading.fields[5].toUtf8());
    EXPECT_THAT(!action.m_hasTo || action.m_to == reading.to, reading.fields[6].toUtf8());
    EXPECT_EQUAL(action.m_task->m_type, reading.type);
    EXPECT_EQUAL(action.m_delay, 0);
    EXPECT_THAT(!action.m_forced && !action.m_task->IsRunning(), "a new action waits");
    const bool canBeLate = action.m_task->m_type == TASK_PLAY_PLAYLIST;
    EXPECT_THAT(canBeLate || action.m_task->GetDelayable_s() == 0, action.m_task->GetName().toUtf8());
}

// What the line means does not hang on how it is written.
void CheckRewritten(const Action& action, const LineReading& reading)
{
    const QString line = reading.Rewritten();
    const Parsed parsed = Parse(line);
    EXPECT_THAT(parsed.action != nullptr, line.toUtf8());
    if (parsed.action == nullptr)
        return;
    CheckFields(*parsed.action, reading);
    EXPECT_EQUAL(parsed.action->m_task->m_identifier, action.m_task->m_identifier);
    EXPECT_EQUAL(parsed.action->m_task->GetDelayable_s(), action.m_task->GetDelayable_s());
}

} // namespace

void Target::SetUp()
{
    Engine::SetUp();
}

void Target::Run(const QByteArray& input)
{
    Engine::Reset();
    const QString line = QString::fromUtf8(input);
    const LineReading reading(line);
    {
        const Parsed first = Parse(line);
        const Parsed second = Parse(line);
        EXPECT_EQUAL(second.log, first.log);
        const bool isPlaylist = reading.hasFields && reading.type == TASK_PLAY_PLAYLIST;
        EXPECT_THAT(first.action == nullptr || reading.IsAction(), input);
        EXPECT_THAT(first.action != nullptr || isPlaylist || !reading.IsAction(), input);
        if (first.action != nullptr)
        {
            CheckFields(*first.action, reading);
            CheckRewritten(*first.action, reading);
        }
    }
    Engine::ExpectNobodyListens();
    for (int answer = 0; answer < Engine::ANSWERS; ++answer)
    {
        std::unique_ptr<Action> action = Parse(line).action;
        if (action == nullptr)
            return;
        ActionRun::Check(std::move(action), static_cast<Engine::Answer>(answer));
    }
}
