#include "Engine.h"

#include "Findings.h"
#include "Log.h"
#include "RequestRules.h"
#include "Scheduler.h"
#include "peers/Peers.h"

#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>

#include <QFile>

#include <algorithm>
#include <array>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{

constexpr int REFUSAL = -3;

// One a process, and gone with it: the data folder is a folder of the disk.
struct Surroundings
{
    VirtualClock clock;
    PeerRecorder peers;
    DataFolder data;
};

std::optional<Surroundings>& Current()
{
    static std::optional<Surroundings> surroundings;
    return surroundings;
}

Engine::Answer m_answer = Engine::ACCEPTED;

PeerReply Reply(const PeerRequest&)
{
    if (m_answer == Engine::BUS_ERROR)
        return PeerReply::Failed(u"Did not receive a reply\nin time"_s);
    return PeerReply(m_answer == Engine::ACCEPTED ? 0 : REFUSAL);
}

// What the library complains of goes beside the log, where nobody reads it.
void OnLibraryMessage(QtMsgType, const QMessageLogContext&, const QString& text)
{
    Findings::Add(__FILE__, __LINE__, "the library says: " + text.toUtf8());
}

// "[tasks/Light.cpp:38] ", with the file named below the daemon's sources.
bool HasPrefix(const QByteArray& text)
{
    const auto isFile = [](char byte) {
        return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || byte == '/';
    };
    const qsizetype length = text.indexOf(".cpp:");
    const qsizetype end = text.indexOf("] ");
    return text.startsWith('[') && length > 1 && std::all_of(text.begin() + 1, text.begin() + length, isFile) &&
           end > length && text.mid(length + 5, end - length - 5).toInt() > 0;
}

void CheckRecord(const LogRecord& record)
{
    static const QByteArrayList origins{Log::ORIGIN, "/com/kestrelix/ozna/soundmanager/soundobj",
                                        "/com/kestrelix/ozna/audiomanager/audioobj",
                                        "/com/kestrelix/ozna/updatemanager/updateobj"};
    static constexpr std::array LEVELS{LEVEL_ERROR, LEVEL_WARNING, LEVEL_NORMAL, LEVEL_DETAIL, LEVEL_TRACE};
    EXPECT_THAT(std::ranges::count(LEVELS, record.level) == 1, record.text);
    EXPECT_THAT(origins.contains(record.origin), record.text);
    EXPECT_THAT(record.text.size() < Log::RECORD_SIZE, record.text);
    EXPECT_THAT(HasPrefix(record.text), record.text);
    // No half character at the cut, nor anywhere else.
    EXPECT_THAT(QString::fromUtf8(record.text).toUtf8() == record.text, record.text.toHex());
}

} // namespace

void Engine::SetUp()
{
    LogRecorder::Install();
    Current().emplace();
    Data().WritePlaylist("intro.mp3;60\nmiddle.mp3;0\nend of it.mp3;30\n", u"morning"_s);
    Data().WritePlaylist("carol.mp3;240\n", u"xmas"_s);
    const QString configuration = Data().Path() + u"/ozna.ini"_s;
    QFile file(configuration);
    if (!file.open(QIODevice::WriteOnly) || file.write("[GENERAL]\nServerIp=10.0.0.5\n") < 0)
        qFatal("%s", qPrintable(file.errorString()));
    qputenv("OZNA_CONFIG_FILE", QFile::encodeName(configuration));
    for (const QString& method : RequestRules::Methods())
        Current()->peers.Answer(method.toLatin1().constData(), Reply);
    Peers::DeleteProxies();
    Peers::CreateProxies();
    qInstallMessageHandler(OnLibraryMessage);
}

void Engine::Reset()
{
    Time().SetLocal(QDate(2024, 5, 15), QTime(12, 0));
    SetAnswer(ACCEPTED);
    Current()->peers.Clear();
    LogRecorder::Clear();
}

VirtualClock& Engine::Time()
{
    return Current()->clock;
}

const DataFolder& Engine::Data()
{
    return Current()->data;
}

void Engine::SetAnswer(Answer answer)
{
    m_answer = answer;
}

QList<LogRecord> Engine::TakeLog()
{
    const QList<LogRecord> records = LogRecorder::Records();
    LogRecorder::Clear();
    std::ranges::for_each(records, CheckRecord);
    return records;
}

QList<PeerRequest> Engine::TakeRequests()
{
    const QList<PeerRequest> requests = Current()->peers.Requests();
    Current()->peers.Clear();
    std::ranges::for_each(requests, RequestRules::Check);
    return requests;
}

void Engine::EmitSignals(const QString& text)
{
    Q_EMIT Scheduler::m_soundManProxy->PlayFileCompleted(text);
    Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted(text);
    Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(true);
    Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(false);
    Q_EMIT Scheduler::m_photoManProxy->PhotoTaken(0, text);
}

void Engine::ExpectNobodyListens()
{
    TakeLog();
    TakeRequests();
    EmitSignals({});
    const QList<LogRecord> log = TakeLog();
    EXPECT_THAT(log.isEmpty(), log[0].text);
    const QList<PeerRequest> requests = TakeRequests();
    EXPECT_THAT(requests.isEmpty(), requests[0].Shown().toUtf8());
}

QList<LogRecord> Engine::OfLevel(unsigned int level, const QList<LogRecord>& records)
{
    QList<LogRecord> found = records;
    found.removeIf([level](const LogRecord& record) { return record.level != level; });
    return found;
}

QByteArray Engine::MessageOf(const LogRecord& record)
{
    return record.text.mid(record.text.indexOf("] ") + 2);
}
