#include "LogChannel.h"
#include "Rows.h"
#include "Suite.h"

#include <LogInterface.h>

#include <QDeadlineTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr const char* ORIGIN = LogSum::ORIGIN;

QByteArray Numbered(int number, int length = 20)
{
    return "record " + QByteArray::number(number) + ' ' + QByteArray(length, 'x');
}

// The records of those numbers, as they are written.
QByteArrayList Lines(const QList<int>& numbers)
{
    QByteArrayList lines;
    for (const int number : numbers)
        lines.append("4 /origin " + Numbered(number));
    return lines;
}

// The log client with that descriptor in standard error's place, which it may not be able to open anew.
class Client final
{
public:
    explicit Client(int descriptor, bool canOpenAnew = true)
        : m_redirected(descriptor)
    {
        rlimit before{};
        ::getrlimit(RLIMIT_NOFILE, &before);
        const rlimit none{0, before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, canOpenAnew ? &before : &none);
        m_client.emplace(u"/client"_s);
        ::setrlimit(RLIMIT_NOFILE, &before);
    }

    void Log(int number, int length = 20) { m_client->EmitLogString(4, Numbered(number, length).constData(), ORIGIN); }

private:
    const StandardError m_redirected;
    std::optional<LogInterface> m_client;
};

using Kinds = Rows<QString, bool>;

const QList<Kinds::Entry> KINDS{
    {"a pipe", u"pipe"_s, true},
    {"a pipe that cannot be opened anew", u"pipe"_s, false},
    {"a socket", u"socket"_s, true},
};

} // namespace

// A log that does not take all at once, and what is told of the records that were lost.
class StandinLogLossTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void ALogThatNobodyReadsIsNotWaitedFor_data() { Kinds::Add(KINDS); }
    void ALogThatNobodyReadsIsNotWaitedFor();
    // A terminal takes a while to hand on what it gets.
    void TheCountsAddUpBesideASlowReader_data()
    {
        Kinds::Add(KINDS + QList{Kinds::Entry("a terminal", u"terminal"_s, true)});
    }
    void TheCountsAddUpBesideASlowReader();
    void ALongRecordIsWrittenToItsEnd();
    void AReaderThatComesBackIsToldWhatItMissed();
    void AFullDiskCountsAsLost();
};

void StandinLogLossTest::ALogThatNobodyReadsIsNotWaitedFor()
{
    const auto& [kind, isOpenedAnew] = Kinds::Current();
    constexpr int RECORDS = 20'000;
    const LogChannel channel(kind);
    Client client(channel.Writer(), isOpenedAnew);
    for (int i = 0; i < RECORDS; ++i)
        client.Log(i);
    QByteArray log = channel.Read();
    const qsizetype gap = log.size();
    client.Log(RECORDS);
    client.Log(RECORDS + 1);
    log += channel.Read();

    // The first records, without a gap; then how many are missing; then what was logged once there was room.
    const LogSum sum(log);
    QCOMPARE(sum.odd, QByteArray());
    QCOMPARE(sum.told, 1);
    const auto written = static_cast<int>(sum.records.size()) - 2;
    QVERIFY(written > 0 && written < RECORDS);
    QCOMPARE(sum.lost, RECORDS - written);
    QCOMPARE(sum.records.mid(written - 1), Lines({written - 1, RECORDS, RECORDS + 1}));
    const qsizetype told = log.indexOf("Log records lost");
    QVERIFY(told > gap && told < log.indexOf(Numbered(RECORDS)));
    // Others that have the same file open find it as it was.
    QCOMPARE(::fcntl(channel.Writer(), F_GETFL) & O_NONBLOCK, 0);
}

void StandinLogLossTest::TheCountsAddUpBesideASlowReader()
{
    const auto& [kind, isOpenedAnew] = Kinds::Current();
    constexpr int RECORDS = 20'000;
    constexpr int READ_EVERY = 500;
    const LogChannel channel(kind);
    Client client(channel.Writer(), isOpenedAnew);
    QByteArray log;
    for (int i = 0; i < RECORDS; ++i)
    {
        client.Log(i);
        if (i % READ_EVERY == 0)
            log += channel.Read(4096);
    }
    int last = RECORDS;
    const auto isLastRead = [&] {
        log += channel.Read();
        return log.endsWith(' ' + Numbered(last) + '\n');
    };
    // A record for which there is no room yet comes with the count of a later one.
    for (const QDeadlineTimer deadline(20'000); !isLastRead();)
    {
        QVERIFY(!deadline.hasExpired());
        client.Log(++last);
        pollfd state{channel.Reader(), POLLIN, 0};
        for (const QDeadlineTimer patience(100); !isLastRead() && !patience.hasExpired();)
            static_cast<void>(::poll(&state, 1, 10));
    }
    const LogSum sum(log);
    QCOMPARE(sum.odd, QByteArray());
    QVERIFY(sum.told > 1);
    QCOMPARE(sum.records.size() + sum.lost, last);
    QCOMPARE(::fcntl(channel.Writer(), F_GETFL) & O_NONBLOCK, 0);
}

void StandinLogLossTest::ALongRecordIsWrittenToItsEnd()
{
    // Longer than what a pipe takes whole or not at all.
    constexpr int LENGTH = 50'000;
    const LogChannel channel(u"pipe"_s);
    Client client(channel.Writer());
    for (int i = 0; i < 3; ++i)
        client.Log(i, LENGTH);
    QByteArray log = channel.Read();
    QVERIFY(!log.endsWith('\n'));
    client.Log(3);
    log += channel.Read();
    const LogSum sum(log);
    QCOMPARE(sum.odd, QByteArray());
    QCOMPARE(sum.lost, 1);
    QCOMPARE(sum.records, (QByteArrayList{"4 /origin " + Numbered(0, LENGTH), "4 /origin " + Numbered(1, LENGTH),
                                          "4 /origin " + Numbered(3)}));
}

void StandinLogLossTest::AReaderThatComesBackIsToldWhatItMissed()
{
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath(u"log"_s));
    QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    int reader = ::open(path.constData(), O_RDONLY | O_NONBLOCK);
    const int writer = ::open(path.constData(), O_WRONLY);
    QByteArray log(1000, '\0');
    {
        Client client(writer);
        client.Log(0);
        ::close(reader);
        client.Log(1);
        client.Log(2);
        reader = ::open(path.constData(), O_RDONLY | O_NONBLOCK);
        client.Log(3);
        log.resize(std::max<ssize_t>(::read(reader, log.data(), static_cast<size_t>(log.size())), 0));
    }
    ::close(reader);
    ::close(writer);
    const LogSum sum(log);
    QCOMPARE(sum.odd, QByteArray());
    QCOMPARE(sum.lost, 2);
    QCOMPARE(sum.records, Lines({0, 3}));
}

// A file that may not grow stands for a disk that is full.
void StandinLogLossTest::AFullDiskCountsAsLost()
{
    constexpr int LIMIT = 100;
    QTemporaryFile file;
    QVERIFY(file.open());
    rlimit saved{};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &saved), 0);
    const rlimit limited{LIMIT, saved.rlim_max};
    const auto earlier = ::signal(SIGXFSZ, SIG_IGN);
    {
        Client client(file.handle());
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limited), 0);
        for (int i = 0; i < 10; ++i)
            client.Log(i);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &saved), 0);
        client.Log(10);
    }
    ::signal(SIGXFSZ, earlier);
    QVERIFY(file.seek(0));
    const LogSum sum(file.readAll());
    QCOMPARE(sum.odd, QByteArray());
    // The third began where the disk was full, and was written to its end when it was not.
    QCOMPARE(sum.records, Lines({0, 1, 2, 10}));
    QCOMPARE(sum.lost, 7);
}

OZNA_CASE(StandinLogLoss, StandinLogLossTest)
#include "tst_StandinLogLoss.moc"
