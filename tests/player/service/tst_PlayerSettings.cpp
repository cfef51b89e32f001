#include "Log.h"
#include "LogRecorder.h"
#include "Suite.h"
#include "peers/SoundManager.h"
#include "service/PlayerSettings.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

// The section [PLAYER].
class tst_PlayerSettings final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();
    void NothingIsNeeded_data();
    void NothingIsNeeded();
    void EverySettingCounts();
    void WhatIsOfNoUseDoesNotCount_data();
    void WhatIsOfNoUseDoesNotCount();
    void ABadValueLeavesTheOthers();
    void AFileThatCannotBeReadIsTold();

private:
    PlayerSettings Read(const QByteArray& content);
    static void CompareWithDefaults(const PlayerSettings& settings);

    QTemporaryDir m_folder;
    QString m_file;
    int m_files = 0;
};

void tst_PlayerSettings::init()
{
    LogRecorder::Install();
    LogRecorder::Clear();
    // The library remembers a file of one name, size and second.
    m_file = m_folder.filePath(u"%1.ini"_s.arg(++m_files));
    qputenv(PlayerSettings::FILE_VARIABLE, m_file.toUtf8());
}

void tst_PlayerSettings::cleanup()
{
    QFile::remove(m_file);
    if (QTest::currentTestFailed())
        LogRecorder::Clear();
    EXPECT_LOG(LEVEL_WARNING, {});
}

PlayerSettings tst_PlayerSettings::Read(const QByteArray& content)
{
    QFile file(m_file);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write the settings");
    file.close();
    return PlayerSettings::Read();
}

void tst_PlayerSettings::CompareWithDefaults(const PlayerSettings& settings)
{
    QCOMPARE(settings.media, u"/opt/ozna/data/media"_s);
    QCOMPARE(settings.playlists, u"/opt/ozna/data/playlists"_s);
    QCOMPARE(settings.gap_ms, 2000);
    QCOMPARE(settings.sound.output, u"pulse"_s);
    QCOMPARE(settings.sound.duck_percent, 20);
    QCOMPARE(settings.sound.offset_ms, 0);
    QCOMPARE(settings.aux, QString());
    QCOMPARE(settings.stations.size(), 0);
    QCOMPARE(settings.amplifiers.size(), 0);
    QCOMPARE(settings.lights, QStringList());
}

void tst_PlayerSettings::NothingIsNeeded_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("no file") << QByteArray();
    QTest::newRow("other sections") << QByteArray("[GENERAL]\nServerIp=10.0.0.5\nGap=9\n");
    QTest::newRow("an empty section") << QByteArray("[PLAYER]\n");
    QTest::newRow("an empty output") << QByteArray("[PLAYER]\nOutput=\n");
    QTest::newRow("an empty output in quotes") << QByteArray("[PLAYER]\nOutput=\"\"\n");
}

void tst_PlayerSettings::NothingIsNeeded()
{
    QFETCH(const QByteArray, content);
    CompareWithDefaults(content.isEmpty() ? PlayerSettings::Read() : Read(content));
}

void tst_PlayerSettings::EverySettingCounts()
{
    const PlayerSettings settings =
        Read("[GENERAL]\nServerIp=10.0.0.5\n"
             "[PLAYER]\nOutput=alsa:plughw:CARD=PCH,DEV=0\nMedia=/srv/media/\n"
             "Playlists=/srv/lists\nGap=0.5\nDuck=0\nOffset_ms=-40\nAux=pulse:line in\n"
             "Radio98.5=https://one.example/live?a=1&b=2,3\nRadio101=rtsp://10.0.0.5:8554/2\n"
             "Amplifier1=hall\nAmplifier8=yard::relay\nLight=lamp, acpi_video0\n");
    QCOMPARE(settings.sound.output, u"alsa:plughw:CARD=PCH,DEV=0"_s);
    QCOMPARE(settings.media, u"/srv/media"_s);
    QCOMPARE(settings.playlists, u"/srv/lists"_s);
    QCOMPARE(settings.gap_ms, 500);
    QCOMPARE(settings.sound.duck_percent, 0);
    QCOMPARE(settings.sound.offset_ms, -40);
    QCOMPARE(settings.aux, u"pulse:line in"_s);
    QVERIFY(settings.StationAt(98.5) != nullptr && settings.StationAt(101) != nullptr);
    QCOMPARE(settings.StationAt(98.5)->address, u"https://one.example/live?a=1&b=2,3"_s);
    QCOMPARE(settings.StationAt(101)->address, u"rtsp://10.0.0.5:8554/2"_s);
    QVERIFY(settings.StationAt(98.6) == nullptr);
    QCOMPARE(settings.amplifiers, (QHash<int, QString>{{1, u"hall"_s}, {8, u"yard::relay"_s}}));
    QCOMPARE(settings.lights, QStringList({u"lamp"_s, u"acpi_video0"_s}));
}

// What the record says that a line should have been.
static QByteArray FormOf(const QByteArray& line)
{
    static const QList<std::pair<QByteArray, QByteArray>> forms{
        {"Output", "pulse, pulse:SINK, alsa:DEVICE or file:PATH; nothing is played"},
        {"Media", "an absolute path"},
        {"Playlists", "an absolute path"},
        {"Gap", "seconds from 0 to 3600, as 1.5"},
        {"Duck", "percent from 0 to 100"},
        {"Offset_ms", "milliseconds from -10000 to 10000"},
        {"Aux", "alsa:DEVICE or pulse:DEVICE"},
        {"Light", "names of outputs with commas in between"},
        {"Radio", "a frequency once, as Radio98.5, and the address of a stream"},
        {"Amplifier", "a number from 1 to 8, as Amplifier1, and the name of an output"}};
    for (const auto& [key, form] : forms)
    {
        if (line.startsWith(key))
            return form;
    }
    return {};
}

void tst_PlayerSettings::WhatIsOfNoUseDoesNotCount_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("form");
    for (const char* line : {"Output=auto",
                             "Output=hw:0,0",
                             "Output=pulse:",
                             "Gap=1,5",
                             "Output=alsa:",
                             "Output=file:",
                             "Media=media",
                             "Media=",
                             "Playlists=lists",
                             "Gap=-1",
                             "Gap=soon",
                             "Gap=nan",
                             "Gap=3601",
                             "Duck=-1",
                             "Duck=101",
                             "Duck=half",
                             "Offset_ms=10001",
                             "Offset_ms=later",
                             "Aux=hw:1",
                             "Aux=file:/tmp/a",
                             "Radio98.5=one.example",
                             "Radio98.5=file:///etc/hostname",
                             "RadioX=https://one.example",
                             "Radio0=https://one.example",
                             "Radio-1=https://one.example",
                             "Amplifier0=hall",
                             "Amplifier9=hall",
                             "Amplifier=hall",
                             "Amplifier1=../hall",
                             "Amplifier1=",
                             "Amplifier1=..",
                             "Light=",
                             "Light=lamp,,panel",
                             "Light=../lamp"})
        QTest::newRow(line) << QByteArray(line) << FormOf(line);
}

void tst_PlayerSettings::WhatIsOfNoUseDoesNotCount()
{
    QFETCH(const QByteArray, line);
    QFETCH(const QByteArray, form);
    PlayerSettings settings = Read("[PLAYER]\n" + line + "\n");
    // An output of no use is not replaced by another.
    if (line.startsWith("Output="))
        QCOMPARE(std::exchange(settings.sound.output, u"pulse"_s).toUtf8(), line.mid(7));
    CompareWithDefaults(settings);
    EXPECT_LOG(LEVEL_WARNING, {{"2 [service/PlayerSettings.cpp] " + m_file.toUtf8() + ": [PLAYER] " + line +
                                    " is of no use: it takes " + form,
                                SoundManager::PATH}});
}

void tst_PlayerSettings::ABadValueLeavesTheOthers()
{
    const PlayerSettings settings = Read("[PLAYER]\nDuck=much\nGap=1\nVolume=3\n");
    QCOMPARE(settings.gap_ms, 1000);
    QCOMPARE(settings.sound.duck_percent, 20);
    QCOMPARE(settings.complaints,
             QStringList({m_file + u": [PLAYER] Duck=much is of no use: it takes percent from 0 to 100"_s,
                          m_file + u": [PLAYER] Volume is no setting of the player"_s}));
    const QByteArray begin = "2 [service/PlayerSettings.cpp] " + m_file.toUtf8() + ": [PLAYER] ";
    EXPECT_LOG(LEVEL_WARNING, {{begin + "Duck=much is of no use: it takes percent from 0 to 100", SoundManager::PATH},
                               {begin + "Volume is no setting of the player", SoundManager::PATH}});
}

void tst_PlayerSettings::AFileThatCannotBeReadIsTold()
{
    qputenv(PlayerSettings::FILE_VARIABLE, m_folder.path().toUtf8());
    CompareWithDefaults(PlayerSettings::Read());
    EXPECT_LOG(LEVEL_WARNING,
               {{"2 [service/PlayerSettings.cpp] " + m_folder.path().toUtf8() + " cannot be read, and does not count",
                 SoundManager::PATH}});
}

OZNA_CASE(PlayerSettings, tst_PlayerSettings)

#include "tst_PlayerSettings.moc"
