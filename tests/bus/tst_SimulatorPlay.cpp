#include "SimulatorTest.h"
#include "Suite.h"

#include <QFile>
#include <QTemporaryDir>

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
        m_heard.append(words.join(QLatin1Char(' ')));
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
    QFile file(folder.filePath(QStringLiteral("expected")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(at.addSecs(dueIn_s).toString(QStringLiteral("HH:mm:ss")).toLatin1());
    file.write("\tPlayFile\t\"gong.mp3\", \"08:30:00\"\n");
    file.close();

    Start({QStringLiteral("--expect"), file.fileName()});
    QVERIFY(WaitUntil([&at] { return QDateTime::currentDateTime() >= at; }));
    for (int i = 0; i < calls; ++i)
        QCOMPARE(Call("sound", PLAY_FILE, {QStringLiteral("gong.mp3"), QStringLiteral("08:30:00")}).arguments(),
                 QVariantList{0});
    QCOMPARE(Control("Quit").type(), QDBusMessage::ReplyMessage);
    const int exitCode = ExitCode(Process());
    QVERIFY2(exitCode == (isGood ? EXIT_SUCCESS : EXIT_FAILURE), Process().readAllStandardOutput().constData());
}

void SimulatorPlay::APlayedFileEnds()
{
    Start({QStringLiteral("--quiet"), QStringLiteral("--play")});
    const Ear ear(Bus().Connection());
    QVERIFY(ear.IsConnected());
    QCOMPARE(Call("sound", PLAY_FILE, {QStringLiteral("gong.mp3"), QString()}).arguments(), QVariantList{0});
    QVERIFY(WaitUntil([&ear] { return !ear.Heard().isEmpty(); }));
    QCOMPARE(ear.Heard(), QStringList{QStringLiteral("PlayFileCompleted gong.mp3")});
}

void SimulatorPlay::AStoppedSourceEndsWithItsSignal()
{
    Start({QStringLiteral("--quiet"), QStringLiteral("--play")});
    const Ear ear(Bus().Connection());
    QVERIFY(ear.IsConnected());
    // A refused request plays nothing.
    QCOMPARE(
        Control("SetAnswer", {SOUND_INTERFACE, PLAY_FILE, QStringLiteral("reply"), QVariant(QVariantList{5}), 0, 1})
            .type(),
        QDBusMessage::ReplyMessage);
    static_cast<void>(Call("sound", PLAY_FILE, {QStringLiteral("refused.mp3"), QString()}));
    static_cast<void>(Call("sound", PLAY_FILE, {QStringLiteral("gong.mp3"), QString()}));
    static_cast<void>(Call("sound", QStringLiteral("PlayPlaylist"),
                           {QStringLiteral("morning"), QStringLiteral("p1"), 1U, QString(), false}));
    static_cast<void>(Call("sound", QStringLiteral("PlayStream"), {QStringLiteral("rtsp://a"), 0U}));
    const QString stop = QStringLiteral("StopPlay");
    static_cast<void>(Call("sound", stop, {QStringLiteral("playlist"), QStringLiteral("p2")}));
    static_cast<void>(Call("sound", stop, {QStringLiteral("playlist"), QStringLiteral("p1")}));
    static_cast<void>(Call("sound", stop, {QStringLiteral("file"), QString()}));
    static_cast<void>(Call("sound", stop, {QStringLiteral("stream"), QString()}));
    QVERIFY(WaitUntil([&ear] { return ear.Heard().size() >= 3; }));
    QCOMPARE(ear.Heard(),
             (QStringList{QStringLiteral("PlayPlaylistCompleted morning"), QStringLiteral("PlayFileCompleted gong.mp3"),
                          QStringLiteral("StreamEnabled false")}));
}

void SimulatorPlay::PhotosAreTakenUntilTheSeriesStops()
{
    Start({QStringLiteral("--quiet"), QStringLiteral("--play")});
    const Ear ear(Bus().Connection());
    QVERIFY(ear.IsConnected());
    static_cast<void>(Call("photo", QStringLiteral("TakePhotoStream"), {0}));
    QVERIFY(WaitUntil([&ear] { return ear.Heard().size() == 2; }));
    static_cast<void>(Call("photo", QStringLiteral("StopPhotoStream")));
    QVERIFY(WaitUntil([&ear] { return ear.Heard().size() == 3; }));
    QVERIFY(ear.Heard()[0].startsWith(QStringLiteral("PhotoTaken 0 /")));
    QCOMPARE(ear.Heard()[2], QStringLiteral("PhotoStreamStopped 2"));
}

OZNA_CASE(SimulatorPlay, SimulatorPlay)
#include "tst_SimulatorPlay.moc"
