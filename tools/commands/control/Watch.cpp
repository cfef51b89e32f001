#include "ControlOptions.h"
#include "SchedulerNames.h"
#include "base/ExitStatus.h"
#include "base/Moment.h"
#include "base/Terminal.h"
#include "base/ToolError.h"
#include "commands/Commands.h"
#include "process/BusWatcher.h"

#include <SchedulerProxy.h>

#include <QCoreApplication>
#include <QDBusServiceWatcher>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{

constexpr uint STREAM_MICROPHONE = 1; // the one PDD action that there is

// Prints what comes as it comes, a line each.
class Watcher final : public QObject
{
public:
    explicit Watcher(bool isJson)
        : m_isJson(isJson)
    {
    }

    void TellState(bool isEnabled, const QString& fileName) const
    {
        Tell(QStringLiteral("state"), ControlOptions::StateWords({isEnabled, fileName}),
             {{QStringLiteral("enabled"), isEnabled}, {QStringLiteral("file"), fileName}});
    }

    void TellAction(uint action, bool isEnabled) const
    {
        const QString name = action == STREAM_MICROPHONE ? QStringLiteral("STREAM_MIC") : QString::number(action);
        Tell(QStringLiteral("pdd"),
             QStringLiteral("PDD action expected: %1 %2")
                 .arg(name, isEnabled ? QStringLiteral("on") : QStringLiteral("off")),
             {{QStringLiteral("action"), static_cast<int>(action)}, {QStringLiteral("enable"), isEnabled}});
    }

    void TellPresence(bool isPresent) const
    {
        Tell(QStringLiteral("daemon"),
             isPresent ? QStringLiteral("the daemon is on the bus") : QStringLiteral("the daemon has left the bus"),
             {{QStringLiteral("present"), isPresent}});
    }

private:
    void Tell(const QString& what, const QString& words, QJsonObject values) const
    {
        const qint64 now_ms = Moment::Now_ms();
        if (!m_isJson)
        {
            Terminal::Print(QStringLiteral("%1 %2  %3\n")
                                .arg(Moment::DateText(Moment::LocalDate(now_ms)), Moment::TimeText(now_ms), words));
            return;
        }
        values.insert(QStringLiteral("time"), Moment::IsoText(now_ms));
        values.insert(QStringLiteral("what"), what);
        Terminal::Print(QString::fromUtf8(QJsonDocument(values).toJson(QJsonDocument::Compact)) + u'\n');
    }

    const bool m_isJson;
};

} // namespace

int Commands::Watch(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("watch"),
                     QStringLiteral("Shows live when the daemon is switched on or off, which PDD actions it expects,\n"
                                    "and when it leaves the bus or comes back, but no loads, which are not announced.\n"
                                    "Ctrl-C ends it."),
                     {});
    ControlOptions::AddJson(line);
    if (!line.Parse(arguments))
        return ExitStatus::CLEAN;
    SchedulerLink link;
    Watcher watcher(ControlOptions::WantsJson(line));
    QDBusServiceWatcher presence(QString::fromLatin1(SchedulerNames::SERVICE), link.Bus().Connection(),
                                 QDBusServiceWatcher::WatchForOwnerChange);
    if (!QObject::connect(&link.Proxy(), &SchedulerProxy::SchedulingEnabled, &watcher, &Watcher::TellState) ||
        !QObject::connect(&link.Proxy(), &SchedulerProxy::ExpectedPddAction, &watcher, &Watcher::TellAction) ||
        !QObject::connect(&presence, &QDBusServiceWatcher::serviceOwnerChanged, &watcher,
                          [&](const QString& /*service*/, const QString& /*earlier*/, const QString& owner) {
                              watcher.TellPresence(!owner.isEmpty());
                          }))
        throw ToolError(QStringLiteral("the daemon's signals cannot be listened to"));
    BusWatcher bus([] {
        Terminal::PrintError(QStringLiteral("ozna-schedule: the session bus is gone\n"));
        QCoreApplication::exit(ExitStatus::FAILED);
    });
    if (!bus.Watch(link.Bus().Connection()))
        throw ToolError(QStringLiteral("the session bus cannot be watched"));
    const SchedulerLink::State state = link.GetState();
    watcher.TellState(state.isEnabled, state.fileName);
    return QCoreApplication::exec();
}
