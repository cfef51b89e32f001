#include "Task.h"

#include "Log.h"
#include "TaskTable.h"
#include "peers/PeerOwner.h"
#include "peers/PeerReply.h"

#include <limits>

const char* PddActionName(PDD_ACTION action)
{
    return action == STREAM_MIC ? "STREAM_MIC" : "UNKNOWN";
}

Task::Task(TaskType type, const QString& identifier)
    : m_identifier(identifier)
    , m_type(type)
{
}

Task::~Task() = default;

unsigned int Task::GetDelayable_s() const
{
    return std::numeric_limits<unsigned int>::max();
}

void Task::PrepareDelayed(unsigned int delay_s)
{
    Q_UNUSED(delay_s)
}

bool Task::IsRunning() const
{
    return m_running && !m_endedWithPeer;
}

void Task::SetCompleted(bool completed)
{
    Q_UNUSED(completed)
}

TaskType Task::NameToType(const QString& name)
{
    bool isNumber = false;
    const int number = name.toInt(&isNumber);
    if (isNumber)
        return static_cast<TaskType>(number);
    const TaskKind* kind = TaskTable::FindByName(name);
    return kind != nullptr ? kind->type : TASK_UNKNOWN;
}

QString Task::GetName() const
{
    const TaskKind* kind = TaskTable::Find(m_type);
    return QString::fromLatin1(kind != nullptr ? kind->logName : TaskTable::UNKNOWN_NAME);
}

QString Task::GetSubject() const
{
    return m_identifier;
}

void Task::BeginWork()
{
    m_running = true;
    m_endedWithPeer = false;
    m_peer.clear();
    static_cast<void>(disconnect(m_peerLeft));
}

void Task::HandOver(const PeerOwner* owner, const PeerReply& reply)
{
    if (owner == nullptr)
        return;
    // The owner that is known may be an earlier one, whose leaving the loop has not been told yet.
    m_peer = reply.Sender().isEmpty() ? owner->Name() : reply.Sender();
    m_endedWithPeer = m_peer.isEmpty() && reply.IsBusError();
    m_peerLeft = connect(owner, &PeerOwner::Left, this, &Task::OnPeerLeft);
    if (!m_peerLeft)
        OZNA_LOG(LEVEL_WARNING, "Can't wait for the peer of %s to leave", qPrintable(GetName()));
}

void Task::OnPeerLeft(const QString& name)
{
    if (name != m_peer || !IsRunning())
        return;
    m_endedWithPeer = true;
    OZNA_LOG(LEVEL_WARNING, "TASK ENDED WITH ITS PEER | %s: %s", qPrintable(GetName()), qPrintable(GetSubject()));
    SetCompleted(true);
}
