#include "LogChannel.h"
#include "Rows.h"
#include "Suite.h"

#include <LogInterface.h>

#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace
{

constexpr const char* LEVEL_VARIABLE = "OZNA_LOG_LEVEL";

// What the log client writes, one element a write: a datagram socket keeps the bounds.
QByteArrayList WritesOf(unsigned int level, const QByteArray& text, const char* origin = LogSum::ORIGIN)
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

// How the log client writes a record, and which ones.
class StandinLogTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void cleanup() { qunsetenv(LEVEL_VARIABLE); }

    void ARecordIsOneWriteOfOneLine_data();
    void ARecordIsOneWriteOfOneLine();
    void TheOriginIsEscapedToo();
    void TheLevelIsFiltered();
    void ALogThatTakesNothingIsNotFatal_data();
    void ALogThatTakesNothingIsNotFatal();
    void TheLossIsAWarning();
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

void StandinLogTest::TheLevelIsFiltered()
{
    // The variable, null where it is not set, and the greatest level that is written.
    const QList<std::pair<QByteArray, unsigned int>> limits{{{}, 4},     {"0", 0},  {"1", 1},  {"2", 2},
                                                            {"4", 4},    {"5", 5},  {"9", 9},  {"", 4},
                                                            {"much", 4}, {"-1", 4}, {"4x", 4}, {"100", 100}};
    for (const auto& [variable, greatest] : limits)
    {
        if (!variable.isNull())
            qputenv(LEVEL_VARIABLE, variable);
        for (const unsigned int level : {1U, 2U, 4U, 5U, 9U})
        {
            const QByteArrayList written{QByteArray::number(level) + " /origin text\n"};
            QCOMPARE(WritesOf(level, "text"_ba), level <= greatest ? written : QByteArrayList());
        }
    }
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
        client.EmitLogString(1, "text", LogSum::ORIGIN);
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY2(!WIFSIGNALED(status), qPrintable(u"ended by signal %1"_s.arg(WTERMSIG(status))));
    QCOMPARE(WEXITSTATUS(status), 0);
}

void StandinLogTest::TheLossIsAWarning()
{
    qputenv(LEVEL_VARIABLE, "1");
    const LogChannel channel(u"pipe"_s);
    const StandardError redirected(channel.Writer());
    LogInterface client(u"/client"_s);
    for (int i = 0; i < 5000; ++i)
        client.EmitLogString(1, "a record of some length", LogSum::ORIGIN);
    static_cast<void>(channel.Read());
    client.EmitLogString(1, "text", LogSum::ORIGIN);
    QCOMPARE(channel.Read(), "1 /origin text\n"_ba);
}

OZNA_CASE(StandinLog, StandinLogTest)
#include "tst_StandinLog.moc"
