#include "CommandCall.h"
#include "Suite.h"

#include <QDir>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

// A schedule may come by standard input or by a pipe: it is read as from a file of the current folder.
class StreamsTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void AStreamIsReadAsAFileIs_data();
    void AStreamIsReadAsAFileIs();
    void TwoPipesAreCompared();
    void StandardInputIsThereOnce();
    void ExplainReadsTheLinesOfAPipe();
    void ExplainTellsHowAFileIsGiven();
    void AnEmptyStreamIsAnEmptySchedule();
    void NoStreamIsLeftBehind();

private:
    CommandCall::Result Shell(const QString& command) const;

    const CommandCall m_call;
};

namespace
{

const QByteArray SCHEDULE = QByteArrayLiteral("1111111|08:30:00|*|*|*|||Volume|5\r\n"
                                              "nonsense\r\n"
                                              "1111111|09:30:00|*|*|*|||PlayPlaylist|morning");
const QByteArray OTHER = QByteArrayLiteral("1111111|08:30:00|*|*|*|||Volume|6\n");

} // namespace

void StreamsTest::initTestCase()
{
    m_call.Write(u"s.csv"_s, SCHEDULE);
    m_call.Write(u"other.csv"_s, OTHER);
    m_call.Write(u"morning"_s, "first.mp3;60\nsecond.mp3;60\n");
}

CommandCall::Result StreamsTest::Shell(const QString& command) const
{
    return m_call.RunProgram(u"bash"_s, {u"-c"_s, QString(command).replace(u"TOOL"_s, QStringLiteral(OZNA_TOOL))});
}

void StreamsTest::AStreamIsReadAsAFileIs_data()
{
    QTest::addColumn<QString>("arguments"); // FILE: the schedule
    QTest::addColumn<int>("status");

    const QString from = u" --from 2024-05-15 --tz UTC"_s;
    QTest::newRow("check") << u"check FILE --today 2024-05-15"_s << 2;
    QTest::newRow("check --json") << u"check --json FILE --today 2024-05-15"_s << 2;
    QTest::newRow("diff, old") << u"diff FILE other.csv"_s + from << 1;
    QTest::newRow("diff, new") << u"diff other.csv FILE"_s + from << 2;
    QTest::newRow("dst") << u"dst FILE --years 1"_s + from << 2;
    QTest::newRow("next") << u"next FILE -n 3"_s + from << 2;
    QTest::newRow("rehearse") << u"rehearse FILE"_s + from << 2;
    QTest::newRow("rehearse --html") << u"rehearse FILE --html -"_s + from << 2;
}

void StreamsTest::AStreamIsReadAsAFileIs()
{
    QFETCH(const QString, arguments);
    QFETCH(const int, status);
    const auto of = [&](const QString& file) { return QString(arguments).replace(u"FILE"_s, file).split(u' '); };
    CommandCall::Result expected = m_call.Run(of(u"s.csv"_s));
    QCOMPARE(expected.status, status);
    expected.output.replace(u"s.csv"_s, u"-"_s);
    expected.errors.replace(u"s.csv"_s, u"-"_s);
    // The name of the other file stays what it is.
    CommandCall::Result input = m_call.Run(of(u"-"_s), SCHEDULE);
    QCOMPARE(input, expected);

    // A pipe of the shell has a name of its own.
    QVERIFY(QDir(m_call.Folder()).exists());
    CommandCall::Result pipe = Shell(u"TOOL "_s + QString(arguments).replace(u"FILE"_s, u"<(cat s.csv)"_s));
    static const QRegularExpression NAME(u"/dev/fd/[0-9]+|(?<=Schedule )[0-9]+(?=<)|(?<=<bdi>)[0-9]+(?=</bdi></h1>)"_s);
    pipe.output.replace(NAME, u"-"_s);
    pipe.errors.replace(NAME, u"-"_s);
    QCOMPARE(pipe, expected);
}

void StreamsTest::TwoPipesAreCompared()
{
    const CommandCall::Result expected = m_call.Run("diff s.csv other.csv --from 2024-05-15 --tz UTC");
    QCOMPARE(expected.status, 1);
    QCOMPARE(Shell(u"TOOL diff <(cat s.csv) <(cat other.csv) --from 2024-05-15 --tz UTC"_s).output, expected.output);
}

void StreamsTest::StandardInputIsThereOnce()
{
    QCOMPARE(m_call.Run({u"diff"_s, u"-"_s, u"-"_s}, SCHEDULE),
             (CommandCall::Result{
                 3, {}, u"ozna-schedule: OLD and NEW cannot both be standard input: there is only one\n"_s}));
}

void StreamsTest::ExplainReadsTheLinesOfAPipe()
{
    const CommandCall::Result expected = m_call.Run({u"explain"_s, u"-"_s}, OTHER + "# a comment\n");
    QCOMPARE(expected.output.count(u'\n'), 2);
    QCOMPARE(Shell(u"TOOL explain <(cat other.csv; echo '# a comment')"_s), expected);
}

void StreamsTest::ExplainTellsHowAFileIsGiven()
{
    QCOMPARE(m_call.Run({u"explain"_s, u"s.csv"_s}),
             (CommandCall::Result{3,
                                  {},
                                  u"ozna-schedule: s.csv: is a file, and no line; ozna-schedule explain - < FILE "
                                  "explains its lines\n"_s}));
    // A stranger's file may have a name that a terminal obeys.
    m_call.Write(u"s\x1b[31m.csv"_s, "");
    QVERIFY(m_call.Run({u"explain"_s, u"s\x1b[31m.csv"_s}).errors.startsWith(u"ozna-schedule: s\\x1b[31m.csv: is"_s));
}

void StreamsTest::AnEmptyStreamIsAnEmptySchedule()
{
    QCOMPARE(m_call.Run({u"check"_s, u"-"_s}), (CommandCall::Result{0, u"0 lines, 0 errors, 0 warnings\n"_s, {}}));
    QCOMPARE(m_call.Run({u"check"_s, u"."_s}), (CommandCall::Result{3, {}, u"ozna-schedule: .: is not a file\n"_s}));
}

void StreamsTest::NoStreamIsLeftBehind()
{
    QVERIFY(QDir(m_call.Folder()).mkpath(u"temporary"_s));
    QCOMPARE(Shell(u"TMPDIR=temporary TOOL next - <s.csv"_s).status, 2);
    QVERIFY(QDir(m_call.Folder() + u"/temporary"_s).isEmpty());
}

OZNA_CASE(Streams, StreamsTest)
#include "tst_Streams.moc"
