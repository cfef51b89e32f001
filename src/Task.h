#pragma once

#include "TaskType.h"

#include <QMetaObject>
#include <QObject>
#include <QString>

#include <cstdint>
#include <forward_list>
#include <memory>

class PeerOwner;
class PeerReply;
class QDBusPendingCallWatcher;

// The actions that the PDD peer can be asked for; travels on the bus as an unsigned int.
enum PDD_ACTION : std::int32_t
{
    NONE = 0,
    STREAM_MIC = 1,
};

// How log records name the action: "STREAM_MIC", and "UNKNOWN" for everything else.
const char* PddActionName(PDD_ACTION action);

// What a task has to make do with since it was made. A record of level 2 has told it.
struct TaskWarning
{
    static constexpr int NO_PARAMETER = -1;

    int parameter; // which one a default stands for, counted from 0; NO_PARAMETER where it is about something else
    QString text;  // as the record has it
};

// The work of one action. Owned by its action, without a Qt parent; used on the event-loop thread only.
class Task : public QObject
{
    Q_OBJECT
public:
    Task(TaskType type, const QString& identifier);
    ~Task() override;

    // By how many seconds the task may be started after its time; 0: never late.
    virtual unsigned int GetDelayable_s() const;

    // The most that GetDelayable_s answers for as long as the task lives: after that time nobody asks it.
    virtual unsigned int GetMostDelayable_s() const;

    // Called just before Run with the seconds by which the start is late; 0 when it is in time.
    virtual void PrepareDelayed(unsigned int delay_s);

    // Performs the work; blocks until the peers have answered. True when the request was accepted.
    // Failures are logged, never thrown.
    virtual bool Run() = 0;

    // True while the work is in progress and the peer that does it is on the bus: the task must not be started again.
    // m_running alone says whether something must be stopped when the task is deleted.
    virtual bool IsRunning() const;

    // Tells the task that it counts as played to its end, or not.
    virtual void SetCompleted(bool completed);

    // In the order of their records.
    [[nodiscard]] const std::forward_list<TaskWarning>& Warnings() const { return m_warnings; }

    // The type that a schedule line asks for by number or by name: any decimal number as it stands,
    // a known name's type, TASK_UNKNOWN for every other text.
    static TaskType NameToType(const QString& name);

    // The name of the task's kind in log records; "unknown" for a type that has none.
    QString GetName() const;

    const QString m_identifier;
    const TaskType m_type;
    bool m_running = false;

protected:
    // What is known of work that was begun.
    struct Work
    {
        QString peer; // the unique name of who does it; empty: not known
        QMetaObject::Connection peerLeft;
        QMetaObject::Connection ended;                       // of a task that waits for a signal of its end
        std::shared_ptr<const QDBusPendingCallWatcher> turn; // of the answer after which that signal counts
    };

    // A record of level 2 has told that; see TaskWarning.
    void NoteWarning(int parameter, const QString& text);

    // Most entries of a long schedule have not begun theirs yet, and take no memory for it.
    [[nodiscard]] Work& WorkBegun();

    // Marks the task as running, before it calls its peer, and forgets the peer that did the work before.
    void BeginWork();

    // The peer whose name owner knows about has answered with reply and does the work from now on, if it does any. When
    // it leaves the bus before the work is done, the work has ended: the task is not running, counts as completed, and
    // one record tells it. Nobody does the work when nobody owned the peer's name. owner: may be null, and nobody's
    // leaving is heard then.
    void HandOver(const PeerOwner* owner, const PeerReply& reply);

    // What the work is about, for log records.
    [[nodiscard]] virtual QString GetSubject() const;

private:
    void OnPeerLeft(const QString& name);

    bool m_endedWithPeer = false;
    std::forward_list<TaskWarning> m_warnings;
    std::unique_ptr<Work> m_work; // null before any
};
