#include "Rows.h"
#include "Suite.h"

#include <LogInterface.h>

#include <QDeadlineTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr const char* LEVEL_VARIABLE = "OZNA_LOG_LEVEL";
constexpr const char* ORIGIN = "/origin";

// Puts a descriptor in standard error's place for as long as it lives.
class StandardError final
{
public:
    explicit StandardError(int descriptor)
        : m_saved(::dup(STDERR_FILENO))
    {
        ::dup2(descriptor, STDERR_FILENO);
    }
    ~StandardError()
    {
        ::dup2(m_saved, STDERR_FILENO);
        ::close(m_saved);
    }

    StandardError(const StandardError&) = delete;
    StandardError& operator=(const StandardError&) = delete;

private:
    const int m_saved;
};

// Two ends of one channel; what is written to the one is read from the other, which never waits.
class Channel final
{
public:
    // kind: "pipe", "socket" or "terminal".
    explicit Channel(const QString& kind)
    {
        const bool isMade = kind == "pipe"_L1     ? ::pipe(m_ends.data()) == 0
                            : kind == "socket"_L1 ? ::socketpair(AF_UNIX, SOCK_STREAM, 0, m_ends.data()) == 0
                                                  : OpenTerminal();
        if (!isMade || ::fcntl(Reader(), F_SETFL, O_NONBLOCK) != 0)
            qFatal("cannot make a %s", qPrintable(kind));
    }
    ~Channel()
    {
        ::close(m_ends[0]);
        ::close(m_ends[1]);
    }

    Channel(const Channel&) = delete;
    Channel& operator=(const Channel&) = delete;

    [[nodiscard]] int Reader() const { return m_ends[0]; }
    [[nodiscard]] int Writer() const { return m_ends[1]; }

    // Reads what there is, no more than that.
    [[nodiscard]] QByteArray Read(qsizetype atMost = 10'000'000) const
    {
        QByteArray all;
        QByteArray block(4096, '\0');
        ssize_t size = 0;
        while (all.size() < atMost && (size = ::read(Reader(), block.data(), static_cast<size_t>(block.size()))) > 0)
            all.append(block.constData(), size);
        return all;
    }

private:
    // One that hands on what it gets, byte by byte.
    bool OpenTerminal()
    {
        termios mode{};
        m_ends[0] = ::posix_openpt(O_RDWR | O_NOCTTY);
        if (m_ends[0] < 0 || ::grantpt(m_ends[0]) != 0 || ::unlockpt(m_ends[0]) != 0)
            return false;
        m_ends[1] = ::open(::ptsname(m_ends[0]), O_RDWR | O_NOCTTY);
        if (m_ends[1] < 0 || ::tcgetattr(m_ends[1], &mode) != 0)
            return false;
        ::cfmakeraw(&mode);
        return ::tcsetattr(m_ends[1], TCSANOW, &mode) == 0;
    }

    std::array<int, 2> m_ends{-1, -1};
};

// No file can be opened for as long as it lives.
class NoDescriptorLeft final
{
public:
    NoDescriptorLeft()
    {
        ::getrlimit(RLIMIT_NOFILE, &m_saved);
        const rlimit none{0, m_saved.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &none);
    }
    ~NoDescriptorLeft() { ::setrlimit(RLIMIT_NOFILE, &m_saved); }

    NoDescriptorLeft(const NoDescriptorLeft&) = delete;
    NoDescriptorLeft& operator=(const NoDescriptorLeft&) = delete;

private:
    rlimit m_saved{};
};

// What a log that was not read all the time holds.
struct LogSum
{
    QByteArrayList records; // but those that tell of lost ones
    int lost = 0;           // what these tell
    int told = 0;           // how many of these there are
    QByteArray odd;         // the first line that is neither
};

LogSum SumOf(const QByteArray& log)
{
    static const QRegularExpression record(u"^4 /origin (record [0-9]+ x*)$"_s);
    static const QRegularExpression loss(u"^2 /com/kestrelix/ozna/scheduler/schedulerobj "
                                         "\\[LogInterface\\.cpp:[0-9]+\\] Log records lost: ([0-9]+)$"_s);
    LogSum sum;
    QByteArrayList lines = log.split('\n');
    if (!lines.takeLast().isEmpty())
        sum.odd = "a record without an end";
    for (const QByteArray& line : lines)
    {
        const QString text = QString::fromLatin1(line);
        if (record.match(text).hasMatch())
            sum.records.append(line);
        else if (const auto match = loss.match(text); match.hasMatch())
        {
            ++sum.told;
            sum.lost += match.captured(1).toInt();
        }
        else if (sum.odd.isEmpty())
            sum.odd = line;
    }
    return sum;
}

QByteArray Numbered(int number, int length = 20)
{
    return "record " + QByteArray::number(number) + ' ' + QByteArray(length, 'x');
}

// What the log client writes, one element a write: a datagram socket keeps the bounds.
QByteArrayList WritesOf(unsigned int level, const QByteArray& text, const char* origin = ORIGIN)
{
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_DGRAM, 0, ends.data()) != 0)
        return {"no socket"_ba};
    {
        const StandardError redirected(ends[0]);
        LogInterface client(u"/client"_s);
        client.EmitLogString(level, text.constData(), origin);
    }
    QByteArrayList writes;
    QByteArray buffer(100'000, '\0');
    for (;;)
    {
        const ssize_t size = ::recv(ends[1], buffer.data(), static_cast<size_t>(buffer.size()), MSG_DONTWAIT);
        if (size < 0)
            break;
        writes.append(buffer.left(size));
    }
    ::close(ends[0]);
    ::close(ends[1]);
    return writes;
}

} // namespace

class StandinLogTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { qunsetenv(LEVEL_VARIABLE); }

    void ARecordIsOneWriteOfOneLine_data();
    void ARecordIsOneWriteOfOneLine();
    void TheOriginIsEscapedToo();
    void TheLevelIsFiltered_data();
    void TheLevelIsFiltered();
    void ALogThatTakesNothingIsNotFatal_data();
    void ALogThatTakesNothingIsNotFatal();
    void ALogThatNobodyReadsIsNotWaitedFor_data();
    void ALogThatNobodyReadsIsNotWaitedFor();
    void TheCountsAddUpBesideASlowReader_data();
    void TheCountsAddUpBesideASlowReader();
    void ALongRecordIsWrittenToItsEnd();
    void AReaderThatComesBackIsToldWhatItMissed();
    void AFullDiskCountsAsLost();
    void TheLossIsAWarning();

private:
    static void AddKinds();
};

void StandinLogTest::ARecordIsOneWriteOfOneLine_data()
{
    Rows<QByteArray, QByteArray>::Add({
        {"plain text", "[main.cpp:9] Scheduler ready", "[main.cpp:9] Scheduler ready"},
        {"an empty text", "", ""},
        {"a trailing newline is dropped", "text\n", "text"},
        {"all trailing newlines are dropped", "text\n\n\n", "text"},
        {"nothing but newlines", "\n\n", ""},
        {"a newline inside is escaped", "a\nb\n", "a\\nb"},
        {"a newline at the start is escaped", "\na", "\\na"},
        {"a tab is escaped", "a\tb", "a\\tb"},
        {"a carriage return is escaped", "a\rb", "a\\rb"},
        {"a carriage return before the last newline stays, escaped", "a\r\n", "a\\r"},
        {"the first control character is escaped", "a\x01", "a\\x01"},
        {"the last control character is escaped", "a\x1f", "a\\x1f"},
        {"a terminal's escape sequence is escaped", "\x1b[31mred", "\\x1b[31mred"},
        {"delete is escaped", "a\x7f", "a\\x7f"},
        {"the first wide control character is escaped", "a\xc2\x80", "a\\xc2\\x80"},
        {"the next line character is escaped", "a\xc2\x85", "a\\xc2\\x85"},
        {"a terminal's one-character escape is escaped",
         "\xc2\x9b"
         "31mred",
         "\\xc2\\x9b31mred"},
        {"the last wide control character is escaped", "a\xc2\x9f", "a\\xc2\\x9f"},
        {"the no-break space is text", "a\xc2\xa0", "a\xc2\xa0"},
        {"the same second byte of another character is text", "\xc3\x9b", "\xc3\x9b"},
        {"the same last byte of a longer character is text", "\xe2\x82\x9b", "\xe2\x82\x9b"},
        {"two leads, the second of a wide control character", "\xc2\xc2\x9b", "\xc2\\xc2\\x9b"},
        {"a lead at the end is text", "a\xc2", "a\xc2"},
        {"UTF-8 is text", "caf\xc3\xa9 \xf0\x9f\x94\x94", "caf\xc3\xa9 \xf0\x9f\x94\x94"},
        {"a backslash is text", "a\\nb", "a\\nb"},
        {"percent signs are text", "100% %s %n", "100% %s %n"},
        {"a forged record stays inside its line", "x\n1 /origin [Action.cpp:1] forged\n",
         "x\\n1 /origin [Action.cpp:1] forged"},
        {"a long text is written whole", QByteArray(20'000, 'x'), QByteArray(20'000, 'x')},
    });
}

void StandinLogTest::ARecordIsOneWriteOfOneLine()
{
    const auto& [text, written] = Rows<QByteArray, QByteArray>::Current();
    QCOMPARE(WritesOf(4, text), QByteArrayList{"4 /origin " + written + '\n'});
}

void StandinLogTest::TheOriginIsEscapedToo()
{
    QCOMPARE(WritesOf(1, "text"_ba, "/a\nb"), QByteArrayList{"1 /a\\nb text\n"_ba});
}

void StandinLogTest::TheLevelIsFiltered_data()
{
    QTest::addColumn<QByteArray>("variable"); // null: not set
    QTest::addColumn<unsigned int>("level");
    QTest::addColumn<bool>("written");
    struct Limit
    {
        QByteArray variable;
        unsigned int greatest;
    };
    const QList<Limit> limits{{{}, 4},     {"0"_ba, 0}, {"1"_ba, 1},    {"2"_ba, 2},  {"4"_ba, 4},  {"5"_ba, 5},
                              {"9"_ba, 9}, {""_ba, 4},  {"much"_ba, 4}, {"-1"_ba, 4}, {"4x"_ba, 4}, {"100"_ba, 100}};
    for (const Limit& limit : limits)
    {
        for (const unsigned int level : {1U, 2U, 4U, 5U, 9U})
            QTest::addRow("'%s', level %u", limit.variable.isNull() ? "unset" : limit.variable.constData(), level)
                << limit.variable << level << (level <= limit.greatest);
    }
}

void StandinLogTest::TheLevelIsFiltered()
{
    QFETCH(QByteArray, variable);
    QFETCH(unsigned int, level);
    QFETCH(bool, written);
    if (!variable.isNull())
        qputenv(LEVEL_VARIABLE, variable);
    QByteArrayList expected;
    if (written)
        expected.append(QByteArray::number(level) + " /origin text\n");
    QCOMPARE(WritesOf(level, "text"_ba), expected);
}

void StandinLogTest::ALogThatTakesNothingIsNotFatal_data()
{
    Rows<QString>::Add({
        {"standard error is closed", u"closed"_s},
        {"the disk is full", u"full"_s},
        {"nobody reads the pipe any more", u"pipe"_s},
    });
}

void StandinLogTest::ALogThatTakesNothingIsNotFatal()
{
    const QString& kind = Rows<QString>::Current();
    const pid_t child = ::fork();
    QVERIFY(child >= 0);
    if (child == 0)
    {
        constexpr rlimit NO_CORE{0, 0};
        ::setrlimit(RLIMIT_CORE, &NO_CORE);
        ::signal(SIGPIPE, SIG_DFL);
        std::array<int, 2> ends{};
        if (kind == "closed"_L1)
            ::close(STDERR_FILENO);
        else if (kind == "full"_L1)
            ::dup2(::open("/dev/full", O_WRONLY), STDERR_FILENO);
        else if (::pipe(ends.data()) == 0)
        {
            ::close(ends[0]);
            ::dup2(ends[1], STDERR_FILENO);
        }
        LogInterface client(u"/client"_s);
        client.EmitLogString(1, "text", ORIGIN);
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY2(!WIFSIGNALED(status), qPrintable(u"ended by signal %1"_s.arg(WTERMSIG(status))));
    QCOMPARE(WEXITSTATUS(status), 0);
}

void StandinLogTest::AddKinds()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("isOpenedAnew");
    QTest::newRow("a pipe") << u"pipe"_s << true;
    QTest::newRow("a pipe that cannot be opened anew") << u"pipe"_s << false;
    QTest::newRow("a socket") << u"socket"_s << true;
}

void StandinLogTest::ALogThatNobodyReadsIsNotWaitedFor_data()
{
    AddKinds();
}

void StandinLogTest::ALogThatNobodyReadsIsNotWaitedFor()
{
    QFETCH(QString, kind);
    QFETCH(bool, isOpenedAnew);
    constexpr int RECORDS = 20'000;
    const Channel channel(kind);
    const StandardError redirected(channel.Writer());
    std::optional<NoDescriptorLeft> noneLeft;
    if (!isOpenedAnew)
        noneLeft.emplace();
    LogInterface client(u"/client"_s);
    noneLeft.reset();
    for (int i = 0; i < RECORDS; ++i)
        client.EmitLogString(4, Numbered(i).constData(), ORIGIN);
    QByteArray log = channel.Read();
    const qsizetype gap = log.size();
    client.EmitLogString(4, Numbered(RECORDS).constData(), ORIGIN);
    client.EmitLogString(4, Numbered(RECORDS + 1).constData(), ORIGIN);
    log += channel.Read();

    // The first records, without a gap; then how many are missing; then what was logged once there was room.
    const LogSum sum = SumOf(log);
    QCOMPARE(sum.odd, QByteArray());
    QCOMPARE(sum.told, 1);
    const auto written = static_cast<int>(sum.records.size()) - 2;
    QVERIFY(written > 0 && written < RECORDS);
    QCOMPARE(sum.lost, RECORDS - written);
    QCOMPARE(sum.records.mid(written - 1),
             (QByteArrayList{"4 /origin " + Numbered(written - 1), "4 /origin " + Numbered(RECORDS),
                             "4 /origin " + Numbered(RECORDS + 1)}));
    const qsizetype told = log.indexOf("Log records lost");
    QVERIFY(told > gap && told < log.indexOf(Numbered(RECORDS)));
    // Others that have the same file open find it as it was.
    QCOMPARE(::fcntl(channel.Writer(), F_GETFL) & O_NONBLOCK, 0);
}

void StandinLogTest::TheCountsAddUpBesideASlowReader_data()
{
    AddKinds();
    // Takes a while to hand on what it gets.
    QTest::newRow("a terminal") << u"terminal"_s << true;
}

void StandinLogTest::TheCountsAddUpBesideASlowReader()
{
    QFETCH(QString, kind);
    QFETCH(bool, isOpenedAnew);
    constexpr int RECORDS = 20'000;
    constexpr int READ_EVERY = 500;
    const Channel channel(kind);
    const StandardError redirected(channel.Writer());
    std::optional<NoDescriptorLeft> noneLeft;
    if (!isOpenedAnew)
        noneLeft.emplace();
    LogInterface client(u"/client"_s);
    noneLeft.reset();
    QByteArray log;
    for (int i = 0; i < RECORDS; ++i)
    {
        client.EmitLogString(4, Numbered(i).constData(), ORIGIN);
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
        client.EmitLogString(4, Numbered(++last).constData(), ORIGIN);
        pollfd state{channel.Reader(), POLLIN, 0};
        for (const QDeadlineTimer patience(100); !isLastRead() && !patience.hasExpired();)
            static_cast<void>(::poll(&state, 1, 10));
    }
    const LogSum sum = SumOf(log);
    QCOMPARE(sum.odd, QByteArray());
    QVERIFY(sum.told > 1);
    QCOMPARE(sum.records.size() + sum.lost, last);
    QCOMPARE(::fcntl(channel.Writer(), F_GETFL) & O_NONBLOCK, 0);
}

void StandinLogTest::ALongRecordIsWrittenToItsEnd()
{
    // Longer than what a pipe takes whole or not at all.
    constexpr int LENGTH = 50'000;
    const Channel channel(u"pipe"_s);
    const StandardError redirected(channel.Writer());
    LogInterface client(u"/client"_s);
    for (int i = 0; i < 3; ++i)
        client.EmitLogString(4, Numbered(i, LENGTH).constData(), ORIGIN);
    QByteArray log = channel.Read();
    QVERIFY(!log.endsWith('\n'));
    client.EmitLogString(4, Numbered(3).constData(), ORIGIN);
    log += channel.Read();
    const LogSum sum = SumOf(log);
    QCOMPARE(sum.odd, QByteArray());
    QCOMPARE(sum.lost, 1);
    QCOMPARE(sum.records, (QByteArrayList{"4 /origin " + Numbered(0, LENGTH), "4 /origin " + Numbered(1, LENGTH),
                                          "4 /origin " + Numbered(3)}));
}

void StandinLogTest::AReaderThatComesBackIsToldWhatItMissed()
{
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.filePath(u"log"_s));
    QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    int reader = ::open(path.constData(), O_RDONLY | O_NONBLOCK);
    const int writer = ::open(path.constData(), O_WRONLY);
    QByteArray log(1000, '\0');
    {
        const StandardError redirected(writer);
        LogInterface client(u"/client"_s);
        client.EmitLogString(4, Numbered(0).constData(), ORIGIN);
        ::close(reader);
        client.EmitLogString(4, Numbered(1).constData(), ORIGIN);
        client.EmitLogString(4, Numbered(2).constData(), ORIGIN);
        reader = ::open(path.constData(), O_RDONLY | O_NONBLOCK);
        client.EmitLogString(4, Numbered(3).constData(), ORIGIN);
        log.resize(std::max<ssize_t>(::read(reader, log.data(), static_cast<size_t>(log.size())), 0));
    }
    ::close(reader);
    ::close(writer);
    const LogSum sum = SumOf(log);
    QCOMPARE(sum.odd, QByteArray());
    QCOMPARE(sum.lost, 2);
    QCOMPARE(sum.records, (QByteArrayList{"4 /origin " + Numbered(0), "4 /origin " + Numbered(3)}));
}

// A file that may not grow stands for a disk that is full.
void StandinLogTest::AFullDiskCountsAsLost()
{
    constexpr int LIMIT = 100;
    QTemporaryFile file;
    QVERIFY(file.open());
    rlimit saved{};
    QCOMPARE(::getrlimit(RLIMIT_FSIZE, &saved), 0);
    const rlimit limited{LIMIT, saved.rlim_max};
    const auto earlier = ::signal(SIGXFSZ, SIG_IGN);
    {
        const StandardError redirected(file.handle());
        LogInterface client(u"/client"_s);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &limited), 0);
        for (int i = 0; i < 10; ++i)
            client.EmitLogString(4, Numbered(i).constData(), ORIGIN);
        QCOMPARE(::setrlimit(RLIMIT_FSIZE, &saved), 0);
        client.EmitLogString(4, Numbered(10).constData(), ORIGIN);
    }
    ::signal(SIGXFSZ, earlier);
    QVERIFY(file.seek(0));
    const LogSum sum = SumOf(file.readAll());
    QCOMPARE(sum.odd, QByteArray());
    // The third began where the disk was full, and was written to its end when it was not.
    QCOMPARE(sum.records, (QByteArrayList{"4 /origin " + Numbered(0), "4 /origin " + Numbered(1),
                                          "4 /origin " + Numbered(2), "4 /origin " + Numbered(10)}));
    QCOMPARE(sum.lost, 7);
}

void StandinLogTest::TheLossIsAWarning()
{
    qputenv(LEVEL_VARIABLE, "1");
    const Channel channel(u"pipe"_s);
    const StandardError redirected(channel.Writer());
    LogInterface client(u"/client"_s);
    for (int i = 0; i < 5000; ++i)
        client.EmitLogString(1, Numbered(i).constData(), ORIGIN);
    static_cast<void>(channel.Read());
    client.EmitLogString(1, "text", ORIGIN);
    QCOMPARE(channel.Read(), "1 /origin text\n"_ba);
}

OZNA_CASE(StandinLog, StandinLogTest)
#include "tst_StandinLog.moc"
