#include <LogInterface.h>

#include <QFile>
#include <QTest>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
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
};

void StandinLogTest::ARecordIsOneWriteOfOneLine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("written");
    const auto row = [](const char* name, const QByteArray& text, const QByteArray& written) {
        QTest::newRow(name) << text << written;
    };
    row("plain text", "[main.cpp:9] Scheduler ready", "[main.cpp:9] Scheduler ready");
    row("an empty text", "", "");
    row("a trailing newline is dropped", "text\n", "text");
    row("all trailing newlines are dropped", "text\n\n\n", "text");
    row("nothing but newlines", "\n\n", "");
    row("a newline inside is escaped", "a\nb\n", "a\\nb");
    row("a newline at the start is escaped", "\na", "\\na");
    row("a tab is escaped", "a\tb", "a\\tb");
    row("a carriage return is escaped", "a\rb", "a\\rb");
    row("a carriage return before the last newline stays, escaped", "a\r\n", "a\\r");
    row("the first control character is escaped", "a\x01", "a\\x01");
    row("the last control character is escaped", "a\x1f", "a\\x1f");
    row("a terminal's escape sequence is escaped", "\x1b[31mred", "\\x1b[31mred");
    row("delete is escaped", "a\x7f", "a\\x7f");
    row("the first wide control character is escaped", "a\xc2\x80", "a\\xc2\\x80");
    row("the next line character is escaped", "a\xc2\x85", "a\\xc2\\x85");
    row("a terminal's one-character escape is escaped",
        "\xc2\x9b"
        "31mred",
        "\\xc2\\x9b31mred");
    row("the last wide control character is escaped", "a\xc2\x9f", "a\\xc2\\x9f");
    row("the no-break space is text", "a\xc2\xa0", "a\xc2\xa0");
    row("the same second byte of another character is text", "\xc3\x9b", "\xc3\x9b");
    row("the same last byte of a longer character is text", "\xe2\x82\x9b", "\xe2\x82\x9b");
    row("two leads, the second of a wide control character", "\xc2\xc2\x9b", "\xc2\\xc2\\x9b");
    row("a lead at the end is text", "a\xc2", "a\xc2");
    row("UTF-8 is text", "caf\xc3\xa9 \xf0\x9f\x94\x94", "caf\xc3\xa9 \xf0\x9f\x94\x94");
    row("a backslash is text", "a\\nb", "a\\nb");
    row("percent signs are text", "100% %s %n", "100% %s %n");
    row("a forged record stays inside its line", "x\n1 /origin [Action.cpp:1] forged\n",
        "x\\n1 /origin [Action.cpp:1] forged");
    row("a long text is written whole", QByteArray(20'000, 'x'), QByteArray(20'000, 'x'));
}

void StandinLogTest::ARecordIsOneWriteOfOneLine()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, written);
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
    QTest::addColumn<QString>("kind");
    QTest::newRow("standard error is closed") << u"closed"_s;
    QTest::newRow("the disk is full") << u"full"_s;
    QTest::newRow("nobody reads the pipe any more") << u"pipe"_s;
}

void StandinLogTest::ALogThatTakesNothingIsNotFatal()
{
    QFETCH(QString, kind);
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

QTEST_GUILESS_MAIN(StandinLogTest)
#include "tst_StandinLog.moc"
