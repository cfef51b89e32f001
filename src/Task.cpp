#include "Task.h"

#include "Log.h"
#include "peers/PeerOwner.h"
#include "peers/PeerReply.h"
#include "text/NumberText.h"
#include "text/SharedValues.h"

#include <iterator>
#include <limits>

namespace
{
constexpr const char* UNKNOWN_NAME = "unknown";
}

const char* PddActionName(PDD_ACTION action)
{
    return action == STREAM_MIC ? "STREAM_MIC" : "UNKNOWN";
}

Task::Task(TaskType type, const QString& identifier)
    : m_identifier(SharedValues::Of(identifier))
    , m_type(type)
{
}

Task::~Task() = default;

unsigned int Task::GetDelayable_s() const
{
    return std::numeric_limits<unsigned int>::max();
}

unsigned int Task::GetMostDelayable_s() const
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
    const std::optional<int> number = NumberText::ToInt(name);
    return number ? static_cast<TaskType>(*number) : TypeOfScheduleName(name);
}

QString Task::GetName() const
{
    return QString::fromLatin1(IsTaskKind(m_type) ? TASK_NAMES[static_cast<size_t>(m_type)].logName : UNKNOWN_NAME);
}

QString Task::GetSubject() const
{
    return m_identifier;
}

void Task::NoteWarning(int parameter, const QString& text)
{
    auto last = m_warnings.before_begin();
    while (std::next(last) != m_warnings.end())
        ++last;
    m_warnings.insert_after(last, {parameter, SharedValues::Of(text)});
}

Task::Work& Task::WorkBegun()
{
    if (m_work == nullptr)
        m_work = std::make_unique<Work>();
    return *m_work;
}

void Task::BeginWork()
{
    m_running = true;
    m_endedWithPeer = false;
    WorkBegun().peer.clear();
    static_cast<void>(disconnect(WorkBegun().peerLeft));
}

void Task::HandOver(const PeerOwner* owner, const PeerReply& reply)
{
    if (owner == nullptr)
        return;
    // PeerOwner may still name an earlier owner: the loop has not heard yet that it has left.
    Work& work = WorkBegun();
    work.peer = reply.Sender().isEmpty() ? owner->Name() : reply.Sender();
    m_endedWithPeer = work.peer.isEmpty() && reply.IsBusError();
    work.peerLeft = connect(owner, &PeerOwner::Left, this, &Task::OnPeerLeft);
    if (!work.peerLeft)
        OZNA_LOG(LEVEL_WARNING, "Can't wait for the peer of %s to leave", qPrintable(GetName()));
}

void Task::OnPeerLeft(const QString& name)
{
    if (name != WorkBegun().peer || !IsRunning())
        return;
    m_endedWithPeer = true;
    OZNA_LOG(LEVEL_WARNING, "TASK ENDED WITH ITS PEER | %s: %s", qPrintable(GetName()), qPrintable(GetSubject()));
    SetCompleted(true);
}
