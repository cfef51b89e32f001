#include "SimulatorTest.h"
#include "Suite.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

// What the simulated device makes of requests on its own, and how it holds them against a schedule.
class SimulatorPlay : public SimulatorTest
{
    Q_OBJECT

private Q_SLOTS:
    void AnExpectedRequestThatDoesNotComeFailsIt_data();
    void AnExpectedRequestThatDoesNotComeFailsIt();
    void APlayedFileEnds();
    void AStoppedSourceEndsWithItsSignal();
    void PhotosAreTakenUntilTheSeriesStops();
};

namespace
{

// Hears the sound and photo managers' signals: "PlayFileCompleted gong.mp3".
class Ear : public QObject
{
    Q_OBJECT
public:
    explicit Ear(QDBusConnection bus)
    {
        for (const auto* const peer : {"com.kestrelix.ozna.soundinterface", "com.kestrelix.ozna.photointerface"})
            m_connected = bus.connect(QString(), QString(), QString::fromLatin1(peer), QString(), this,
                                      SLOT(OnSignal(QDBusMessage))) &&
                          m_connected;
    }

    [[nodiscard]] bool IsConnected() const { return m_connected; }
    [[nodiscard]] const QStringList& Heard() const { return m_heard; }

private Q_SLOTS:
    void OnSignal(const QDBusMessage& message)
    {
        QStringList words{message.member()};
        for (const QVariant& value : message.arguments())
            words.append(value.toString());
        m_heard.append(words.join(u' '));
    }

private:
    bool m_connected = true;
    QStringList m_heard;
};

} // namespace

void SimulatorPlay::AnExpectedRequestThatDoesNotComeFailsIt_data()
{
    QTest::addColumn<int>("dueIn_s");
    QTest::addColumn<int>("calls");
    QTest::addColumn<bool>("isGood");
    QTest::newRow("nothing comes") << 0 << 0 << false;
    QTest::newRow("it comes a minute early") << 60 << 1 << false;
    QTest::newRow("it comes a minute late") << -60 << 1 << false;
    QTest::newRow("it comes on its second") << 0 << 1 << true;
    QTest::newRow("it comes twice") << 0 << 2 << false;
}

void SimulatorPlay::AnExpectedRequestThatDoesNotComeFailsIt()
{
    QFETCH(int, dueIn_s);
    QFETCH(int, calls);
    QFETCH(bool, isGood);
    constexpr int AHEAD_S = 2;
    // Truncates to the second.
    const QDateTime at = QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch() + AHEAD_S);
    QTemporaryDir folder;
    QFile file(folder.filePath(u"expected"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(at.addSecs(dueIn_s).toString(u"HH:mm:ss"_s).toLatin1());
    file.write("\tPlayFile\t\"gong.mp3\", \"08:30:00\"\n");
    file.close();

    Start({u"--expect"_s, file.fileName()});
    QVERIFY(WaitUntil([&at] { return QDateTime::currentDateTime() >= at; }));
    for (int i = 0; i < calls; ++i)
        QCOMPARE(Call("sound", PLAY_FILE, {u"gong.mp3"_s, u"08:30:00"_s}).arguments(), QVariantList{0});
    Order("Quit");
    const int exitCode = ExitCode(Process());
    QVERIFY2(exitCode == (isGood ? EXIT_SUCCESS : EXIT_FAILURE), Process().readAllStandardOutput().constData());
}

void SimulatorPlay::APlayedFileEnds()
{
    Start({u"--quiet"_s, u"--play"_s});
    const Ear ear(Bus().Connection());
    QVERIFY(ear.IsConnected());
    QCOMPARE(Call("sound", PLAY_FILE, {u"gong.mp3"_s, QString()}).arguments(), QVariantList{0});
    QVERIFY(WaitUntil([&ear] { return !ear.Heard().isEmpty(); }));
    QCOMPARE(ear.Heard(), QStringList{u"PlayFileCompleted gong.mp3"_s});
}

void SimulatorPlay::AStoppedSourceEndsWithItsSignal()
{
    Start({u"--quiet"_s, u"--play"_s});
    const Ear ear(Bus().Connection());
    QVERIFY(ear.IsConnected());
    // A refused request plays nothing.
    Order("SetAnswer", {SOUND_INTERFACE, PLAY_FILE, u"reply"_s, QVariant(QVariantList{5}), 0, 1});
    static_cast<void>(Call("sound", PLAY_FILE, {u"refused.mp3"_s, QString()}));
    static_cast<void>(Call("sound", PLAY_FILE, {u"gong.mp3"_s, QString()}));
    static_cast<void>(Call("sound", u"PlayPlaylist"_s, {u"morning"_s, u"p1"_s, 1U, QString(), false}));
    static_cast<void>(Call("sound", u"PlayStream"_s, {u"rtsp://a"_s, 0U}));
    const QString stop = u"StopPlay"_s;
    static_cast<void>(Call("sound", stop, {u"playlist"_s, u"p2"_s}));
    static_cast<void>(Call("sound", stop, {u"playlist"_s, u"p1"_s}));
    static_cast<void>(Call("sound", stop, {u"file"_s, QString()}));
    static_cast<void>(Call("sound", stop, {u"stream"_s, QString()}));
    QVERIFY(WaitUntil([&ear] { return ear.Heard().size() >= 3; }));
    QCOMPARE(ear.Heard(), (QStringList{u"PlayPlaylistCompleted morning"_s, u"PlayFileCompleted gong.mp3"_s,
                                       u"StreamEnabled false"_s}));
}

void SimulatorPlay::PhotosAreTakenUntilTheSeriesStops()
{
    Start({u"--quiet"_s, u"--play"_s});
    const Ear ear(Bus().Connection());
    QVERIFY(ear.IsConnected());
    static_cast<void>(Call("photo", u"TakePhotoStream"_s, {0}));
    QVERIFY(WaitUntil([&ear] { return ear.Heard().size() == 2; }));
    static_cast<void>(Call("photo", u"StopPhotoStream"_s));
    QVERIFY(WaitUntil([&ear] { return ear.Heard().size() == 3; }));
    QVERIFY(ear.Heard()[0].startsWith(u"PhotoTaken 0 /"_s));
    QCOMPARE(ear.Heard()[2], u"PhotoStreamStopped 2"_s);
}

OZNA_CASE(SimulatorPlay, SimulatorPlay)
#include "tst_SimulatorPlay.moc"
