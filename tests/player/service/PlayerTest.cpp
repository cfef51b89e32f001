#include "PlayerTest.h"

#include "peers/SoundManager.h"
#include "service/Exports.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace
{

const QString SERVICE = QString::fromLatin1(SoundManager::SERVICE);
const QString OBJECT = QString::fromLatin1(SoundManager::PATH);
const QString INTERFACE = u"com.kestrelix.ozna.soundinterface"_s;
constexpr int NOTHING_MORE_MS = 50;
constexpr int BUS_ERROR = -1;

int StatusOf(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != u"i")
        return BUS_ERROR;
    return reply.arguments().constFirst().toInt();
}

} // namespace

PlayerTest::PlayerTest() = default;

PlayerTest::~PlayerTest() = default;

void PlayerTest::init()
{
    LogRecorder::Install();
    LogRecorder::Clear();
    m_clock.emplace();
    QVERIFY(QDir(m_folder.path()).removeRecursively());
    for (const QString& name : {u"media"_s, u"playlists"_s, u"leds"_s})
        QVERIFY(QDir().mkpath(Path(name)));
    m_settings = {};
    m_settings.media = Path(u"media"_s);
    m_settings.playlists = Path(u"playlists"_s);
    m_bus.emplace();
    m_serviceBus = m_bus->Connect();
    QDBusConnection client = m_bus->Connection();
    const auto listen = [&](const QString& signal, const char* slot) {
        return client.connect(SERVICE, OBJECT, INTERFACE, signal, this, slot);
    };
    QVERIFY(listen(u"PlayFileCompleted"_s, SLOT(OnFileCompleted(QString))));
    QVERIFY(listen(u"PlayPlaylistCompleted"_s, SLOT(OnPlaylistCompleted(QString))));
    QVERIFY(listen(u"StreamEnabled"_s, SLOT(OnStreamEnabled(bool))));
    StartService();
}

void PlayerTest::cleanup()
{
    m_service.reset();
    m_sound.reset();
    m_serviceBus.reset();
    m_bus.reset();
    m_clock.reset();
    m_seen.clear();
    if (QTest::currentTestFailed())
        LogRecorder::Clear();
    EXPECT_LOG(LEVEL_WARNING, {});
}

void PlayerTest::StartService()
{
    m_service.reset();
    m_sound.emplace();
    m_service = std::make_unique<SoundObject>(*m_sound, m_settings, Path(u"state/volumes.ini"_s), Path(u"leds"_s));
    QVERIFY(Exports::Register(*m_serviceBus, *m_service));
}

void PlayerTest::Write(const QString& name, const QByteArray& content) const
{
    QFile file(Path(name));
    if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
}

QByteArray PlayerTest::Read(const QString& name) const
{
    QFile file(Path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

int PlayerTest::Call(const char* method, const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(SERVICE, OBJECT, INTERFACE, QString::fromLatin1(method));
    call.setArguments(arguments);
    const QDBusPendingCall pending = m_bus->Connection().asyncCall(call);
    return WaitUntil([&] { return pending.isFinished(); }) ? StatusOf(pending.reply()) : BUS_ERROR;
}

void PlayerTest::Ask(const char* method, const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(SERVICE, OBJECT, INTERFACE, QString::fromLatin1(method));
    call.setArguments(arguments);
    auto* const watcher = new QDBusPendingCallWatcher(m_bus->Connection().asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, name = call.member()] {
        m_seen.append(u"%1: %2"_s.arg(name).arg(StatusOf(watcher->reply())));
        watcher->deleteLater();
    });
    // It has reached the service when the sound maker, or nobody, was asked.
    static_cast<void>(WaitUntil([] { return false; }, NOTHING_MORE_MS));
}

QStringList PlayerTest::Seen(qsizetype count)
{
    static_cast<void>(WaitUntil([&] { return m_seen.size() >= count; }));
    static_cast<void>(WaitUntil([] { return false; }, NOTHING_MORE_MS));
    return std::exchange(m_seen, {});
}

QString PlayerTest::Shown(qsizetype piece) const
{
    static const QHash<Piece::Place, QString> places{{Piece::Place::MESSAGE, u"file"_s},
                                                     {Piece::Place::PLAYLIST, u"playlist"_s},
                                                     {Piece::Place::STREAM, u"stream"_s},
                                                     {Piece::Place::RADIO, u"radio"_s},
                                                     {Piece::Place::AUX, u"aux"_s}};
    if (piece >= m_sound->Pieces().size())
        return u"(none)"_s;
    const Piece& shown = m_sound->Pieces()[piece];
    QString text = places[shown.place];
    for (const QString& source : shown.sources)
        text += u' ' + QString(source).remove(m_settings.media + u'/');
    if (shown.due_ms)
        text += u" @ +%1"_s.arg(*shown.due_ms - m_clock->Utc_ms());
    return text + u" %1"_s.arg(shown.volume);
}

void PlayerTest::OnFileCompleted(const QString& file)
{
    m_seen.append(u"PlayFileCompleted(%1)"_s.arg(file));
}

void PlayerTest::OnPlaylistCompleted(const QString& playlist)
{
    m_seen.append(u"PlayPlaylistCompleted(%1)"_s.arg(playlist));
}

void PlayerTest::OnStreamEnabled(bool enabled)
{
    m_seen.append(enabled ? u"StreamEnabled(true)"_s : u"StreamEnabled(false)"_s);
}
