#include "Ear.h"
#include "Suite.h"
#include "Wait.h"
#include "ear/Gong.h"
#include "ear/WavFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

// The ear hears what is written into its FIFO, and when.
class EarTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void ASoundIsHeardWhenItIsWritten();
    void ABlockThatIsReadInPartsCameAtOnce();
    void TornFramesAreJoined();
    void WhoWritesLosesAnEarThatIsTakenAway();
    void AWavFileHasItsSamples();

private:
    [[nodiscard]] QString Path() const { return m_folder->filePath(u"fifo"_s); }
    [[nodiscard]] int OpenWriter() const;

    std::optional<QTemporaryDir> m_folder;
};

namespace
{

std::vector<char> Bytes(const std::vector<Pcm::Sample>& samples)
{
    const char* const begin = reinterpret_cast<const char*>(samples.data());
    return {begin, begin + samples.size() * sizeof(Pcm::Sample)};
}

} // namespace

void EarTest::init()
{
    m_folder.emplace();
}

int EarTest::OpenWriter() const
{
    int file = -1;
    // Without a reader yet there is nothing to open.
    const bool isOpen = WaitUntil([&] {
        file = ::open(QFile::encodeName(Path()).constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        return file >= 0;
    });
    return isOpen ? file : -1;
}

void EarTest::ASoundIsHeardWhenItIsWritten()
{
    const Ear ear(Path());
    const int file = OpenWriter();
    QVERIFY(file >= 0);
    // Silence of 100 blocks ahead, each at its time; only one is not late, as on a machine that is busy.
    std::vector<Pcm::Sample> block(480 * Pcm::CHANNELS);
    const auto begin = std::chrono::system_clock::now() + std::chrono::milliseconds(20);
    for (int i = 0; i < 100; ++i)
    {
        if (i == 60 || i == 61)
            std::fill(block.begin() + (i == 60 ? 240 * Pcm::CHANNELS : 0), block.end(), 9000);
        std::this_thread::sleep_until(begin + std::chrono::milliseconds(10 * i));
        QCOMPARE(::write(file, block.data(), 960 * sizeof(Pcm::Sample)), ssize_t{960 * sizeof(Pcm::Sample)});
    }
    QVERIFY(WaitUntil([&] { return ear.Frames() == 48000; }));
    ::close(file);
    const std::vector<Ear::Heard> sounds = ear.Sounds();
    QCOMPARE(sounds.size(), size_t{1});
    QCOMPARE(sounds[0].begin, qint64{60 * 480 + 240});
    const double due_ms = std::chrono::duration<double, std::milli>(begin.time_since_epoch()).count() + 605;
    const QByteArray error = QByteArray::number(sounds[0].at_ms - due_ms);
    QVERIFY2(sounds[0].at_ms - due_ms > -0.1 && sounds[0].at_ms - due_ms < 10, error.constData());
    QVERIFY(sounds[0].arrived_ms >= sounds[0].at_ms - 0.001);
    QVERIFY(qAbs(ear.Level(30000, 40000) - 9000 / Pcm::FULL_SCALE) < 1e-6);
}

void EarTest::ABlockThatIsReadInPartsCameAtOnce()
{
    const Ear ear(Path());
    const int file = OpenWriter();
    QVERIFY(file >= 0);
    // Blocks of 30 ms, which are more than is read at once.
    constexpr int FRAMES = 1440;
    std::vector<Pcm::Sample> block(size_t{FRAMES} * Pcm::CHANNELS);
    const auto begin = std::chrono::system_clock::now() + std::chrono::milliseconds(20);
    for (int i = 0; i < 20; ++i)
    {
        if (i == 10)
            std::ranges::fill(block, 9000);
        std::this_thread::sleep_until(begin + std::chrono::milliseconds(30 * i));
        const size_t size = block.size() * sizeof(Pcm::Sample);
        QCOMPARE(::write(file, block.data(), size), static_cast<ssize_t>(size));
    }
    QVERIFY(WaitUntil([&] { return ear.Frames() == 20 * FRAMES; }));
    ::close(file);
    const std::vector<Ear::Heard> sounds = ear.Sounds();
    QCOMPARE(sounds.size(), size_t{1});
    const double due_ms = std::chrono::duration<double, std::milli>(begin.time_since_epoch()).count() + 300;
    const QByteArray error = QByteArray::number(sounds[0].at_ms - due_ms);
    QVERIFY2(sounds[0].at_ms - due_ms > -0.1 && sounds[0].at_ms - due_ms < 20, error.constData());
}

void EarTest::TornFramesAreJoined()
{
    const Ear ear(Path());
    const int file = OpenWriter();
    QVERIFY(file >= 0);
    const std::vector<char> bytes = Bytes(Gong::Samples(20));
    for (size_t at = 0; at < bytes.size(); at += 7)
    {
        const size_t size = std::min<size_t>(7, bytes.size() - at);
        QCOMPARE(::write(file, bytes.data() + at, size), static_cast<ssize_t>(size));
    }
    QVERIFY(WaitUntil([&] { return ear.Frames() == 960; }));
    ::close(file);
    QVERIFY(ear.Samples(0, 960) == Gong::Samples(20));
}

void EarTest::WhoWritesLosesAnEarThatIsTakenAway()
{
    ::signal(SIGPIPE, SIG_IGN);
    Ear ear(Path());
    const int file = OpenWriter();
    QVERIFY(file >= 0);
    ear.TakeAway();
    const std::vector<char> bytes = Bytes(Gong::Samples(20));
    QCOMPARE(::write(file, bytes.data(), bytes.size()), ssize_t{-1});
    QCOMPARE(errno, EPIPE);
    ::close(file);
    ear.Listen();
    const int again = OpenWriter();
    QVERIFY(again >= 0);
    QCOMPARE(::write(again, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
    QVERIFY(WaitUntil([&] { return ear.Frames() == 960; }));
    ::close(again);
}

void EarTest::AWavFileHasItsSamples()
{
    const std::vector<Pcm::Sample> samples = Gong::Samples(100);
    QCOMPARE(WavFile::Write(Path(), samples), QString());
    QFile file(Path());
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray header = file.read(44);
    QCOMPARE(header.left(4), "RIFF");
    QCOMPARE(header.mid(8, 8), "WAVEfmt ");
    // 16 bytes of form 1, two channels, 48,000 frames of 4 bytes, 16 bits.
    QCOMPARE(header.mid(16, 20).toHex(), "1000000001000200"
                                         "80bb000000ee0200"
                                         "04001000");
    QCOMPARE(file.readAll(), QByteArray(Bytes(samples).data(), static_cast<qsizetype>(Bytes(samples).size())));
    QVERIFY(!WavFile::Write(u"/nonexistent/gong.wav"_s, samples).isEmpty());
}

OZNA_CASE(Ear, EarTest)
#include "tst_Ear.moc"
