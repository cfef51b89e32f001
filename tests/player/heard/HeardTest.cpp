#include "HeardTest.h"

#include "TextDiff.h"

#include <QDateTime>
#include <QDir>

#include <csignal>

using namespace Qt::StringLiterals;

void HeardTest::WriteFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s: %s", qPrintable(path), qPrintable(file.errorString()));
}

void HeardTest::WriteSound(const QString& name, const std::vector<Pcm::Sample>& samples) const
{
    MediaFiles::Write(MediaPath(name), samples);
}

void HeardTest::WritePlaylist(const QString& name, const QByteArray& lines) const
{
    WriteFile(Path(u"playlists/"_s + name), lines);
}

void HeardTest::WriteSettings(const QByteArray& lines) const
{
    const QString folder = m_folder->path();
    WriteFile(Path(u"ozna.ini"_s),
              u"[PLAYER]\nOutput=file:%1/fifo\nMedia=%1/media\nPlaylists=%1/playlists\n"_s.arg(folder).toUtf8() +
                  lines);
}

void HeardTest::init()
{
    m_folder.emplace();
    for (const QString& name : {u"media"_s, u"playlists"_s, u"state"_s})
    {
        if (!QDir(m_folder->path()).mkdir(name))
            qFatal("cannot make the folder %s", qPrintable(name));
    }
    WriteSettings();
    m_bus.emplace();
    m_ear = std::make_unique<Ear>(Path(u"fifo"_s));
    m_client = std::make_unique<PlayerClient>(m_bus->Connection());
    MakePlayer();
    m_unexpected.clear();
    Begin();
}

void HeardTest::cleanup()
{
    Expect({});
    m_player.reset();
    m_client.reset();
    m_ear.reset();
    m_bus.reset();
    m_folder.reset();
    const QByteArray difference = TextDiff(QStringList(), m_unexpected, "line");
    QVERIFY2(difference.isEmpty(), difference.constData());
}

void HeardTest::MakePlayer()
{
    m_player = std::make_unique<DaemonProcess>(u"ozna-player"_s);
    QProcessEnvironment& environment = m_player->Environment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_bus->Address());
    environment.insert(u"OZNA_CONFIG_FILE"_s, Path(u"ozna.ini"_s));
    environment.insert(u"STATE_DIRECTORY"_s, Path(u"state"_s));
    // The library's notes of its plugins, made by the first player; it puts them in place whole.
    environment.insert(u"GST_REGISTRY"_s, QStringLiteral(OZNA_BUILD_DIR "/tests/sound-plugins"));
}

bool HeardTest::StartPlayer()
{
    m_player->Start();
    return m_bus->WaitForService(PlayerClient::SERVICE);
}

int HeardTest::StopPlayer()
{
    m_player->Signal(SIGTERM);
    return m_player->WaitForExit();
}

qint64 HeardTest::MomentAhead_ms(qint64 ahead_ms)
{
    constexpr qint64 SECOND_MS = 1000;
    return (QDateTime::currentMSecsSinceEpoch() + ahead_ms + SECOND_MS - 1) / SECOND_MS * SECOND_MS;
}

QString HeardTest::TimeText(qint64 moment_ms)
{
    return QDateTime::fromMSecsSinceEpoch(moment_ms, Qt::UTC).toString(u"hh:mm:ss");
}

bool HeardTest::WaitForSounds(size_t count, int timeout_ms) const
{
    return WaitUntil([&] { return m_ear->EndedCount() >= count; }, timeout_ms);
}

void HeardTest::Pause(int time_ms)
{
    static_cast<void>(WaitUntil([] { return false; }, time_ms));
}

void HeardTest::Expect(const QStringList& texts)
{
    for (const QString& line : m_player->Take(2))
    {
        const bool isExpected =
            std::ranges::any_of(texts, [&line](const QString& text) { return line.contains(text); });
        if (!isExpected)
            m_unexpected.append(line);
    }
}
