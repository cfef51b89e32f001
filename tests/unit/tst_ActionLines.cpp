#include "Action.h"
#include "Suite.h"
#include "UnitTest.h"

#include <QSignalSpy>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace
{

constexpr const char* RULE = "5 [Action.cpp] -------------------------------------";
constexpr const char* HEAD = "5 [Action.cpp] --------------- Action --------------";

// The summary of a line whose fields are plain, as it begins and as it ends.
LogLines Summary(const QByteArray& line, const QByteArray& start, const QByteArray& task, const QByteArray& parameters)
{
    return {"9 [Action.cpp] >>> Action line: " + line,
            "9 [Action.cpp] Found day=*, consider day=all",
            "9 [Action.cpp] Found month=*, consider month=all",
            "9 [Action.cpp] Found year=*, consider year=all",
            HEAD,
            "5 [Action.cpp] Dow:    0x7f (1111111) ",
            "5 [Action.cpp] Start:  " + start,
            "5 [Action.cpp] Spot:   day=*, month=*, year=*",
            "5 [Action.cpp] From:   always",
            "5 [Action.cpp] To:     always",
            "5 [Action.cpp] Task:   " + task,
            "5 [Action.cpp] Params: " + parameters,
            RULE};
}

} // namespace

class ActionLinesTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ALineLogsItsSummaryAndCreatesItsTask_data();
    void ALineLogsItsSummaryAndCreatesItsTask();
    void ARejectedLineLogsItsSummaryAndTheReason_data();
    void ARejectedLineLogsItsSummaryAndTheReason();
    void ALineThatLacksFieldsIsRejectedAtOnce_data();
    void ALineThatLacksFieldsIsRejectedAtOnce();
    void AnOddLineIsNeverFatal_data();
    void AnOddLineIsNeverFatal();
    void APddRequestIsForwarded();
};

void ActionLinesTest::ALineLogsItsSummaryAndCreatesItsTask_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<LogLines>("log");
    QTest::addColumn<int>("type");

    QTest::newRow("every field") << "1111100|08:30:00|25|12|2024|20240101|20241231|PlayMessage|gong.mp3,70"_ba
                                 << LogLines{"9 [Action.cpp] >>> Action line: "
                                             "1111100|08:30:00|25|12|2024|20240101|20241231|PlayMessage|gong.mp3,70",
                                             HEAD,
                                             "5 [Action.cpp] Dow:    0x3e (1111100) ",
                                             "5 [Action.cpp] Start:  08:30:00",
                                             "5 [Action.cpp] Spot:   day=25, month=12, year=2024",
                                             "5 [Action.cpp] From:   01-01-2024",
                                             "5 [Action.cpp] To:     31-12-2024",
                                             "5 [Action.cpp] Task:   PlayMessage (type=1)",
                                             "5 [Action.cpp] Params: gong.mp3,70",
                                             RULE,
                                             "4 [tasks/PlayMessage.cpp] TASK CREATED | PlayMessage: gong.mp3 @ "
                                             "08:30:00 (vol=70)"}
                                 << 1;
    QTest::newRow("every fallback") << " 0x|8:5:z| 32 |0|x|20240230||  StopMessage  "_ba
                                    << LogLines{"9 [Action.cpp] >>> Action line:  "
                                                "0x|8:5:z| 32 |0|x|20240230||  StopMessage  ",
                                                "9 [Action.cpp] Found day=32, consider day=all",
                                                "9 [Action.cpp] Found month=0, consider month=all",
                                                "9 [Action.cpp] Found year=x, consider year=all",
                                                HEAD,
                                                "5 [Action.cpp] Dow:    0x0 (0x) ",
                                                "5 [Action.cpp] Start:  08:05:00",
                                                "5 [Action.cpp] Spot:   day=*, month=*, year=*",
                                                "5 [Action.cpp] From:   always",
                                                "5 [Action.cpp] To:     always",
                                                "5 [Action.cpp] Task:   StopMessage (type=14)",
                                                "5 [Action.cpp] Params: ",
                                                RULE,
                                                "4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage"}
                                    << 14;

    const auto row = [](const char* name, const QByteArray& line, const QByteArray& start, const QByteArray& task,
                        const QByteArray& parameters, int type, const LogLines& created) {
        QTest::newRow(name) << line << Summary(line, start, task, parameters) + created << type;
    };
    const auto stop = [&row](const char* name, const QByteArray& tail, const QByteArray& task,
                             const QByteArray& parameters) {
        row(name, "1111111|08:30:00|*|*|*|||" + tail, "08:30:00", task, parameters, 14,
            {"4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage"});
    };
    stop("eight fields", "StopMessage", "StopMessage (type=14)", "");
    stop("nine fields", "StopMessage|a,b", "StopMessage (type=14)", "a,b");
    stop("nine fields, the last of blanks", "StopMessage| ", "StopMessage (type=14)", "");
    stop("an empty ninth field is none", "StopMessage|", "StopMessage (type=14)", "");
    stop("ten fields lose the parameters", "StopMessage|a|b", "StopMessage (type=14)", "");
    stop("twelve fields lose the parameters", "StopMessage|a|b|c|d", "StopMessage (type=14)", "");
    stop("a task by its number", "14|a", "14 (type=14)", "a");
    stop("a number in another form", "0014", "0014 (type=14)", "");

    const auto play = [&row](const char* name, const QByteArray& start, const QByteArray& shownStart,
                             const QByteArray& parameters, const QByteArray& text, const LogLines& before = {}) {
        row(name, "1111111|" + start + "|*|*|*|||PlayMessage|" + parameters, shownStart, "PlayMessage (type=1)",
            parameters.trimmed(), 1,
            before + LogLines{"4 [tasks/PlayMessage.cpp] TASK CREATED | PlayMessage: " + text});
    };
    play("a file alone leaves the volume alone", "08:30:00", "08:30:00", "a", "a @ 08:30:00 (vol=-1)");
    play("a file and a volume", "08:30:00", "08:30:00", "a,5", "a @ 08:30:00 (vol=5)");
    play("parameters are trimmed", "08:30:00", "08:30:00", " a , 5 ", "a @ 08:30:00 (vol=5)");
    play("further parameters are not looked at", "08:30:00", "08:30:00", "a,5,c", "a @ 08:30:00 (vol=5)");
    play("a comma at the end adds no parameter", "08:30:00", "08:30:00", "a,", "a @ 08:30:00 (vol=-1)");
    play("an empty first parameter is one", "08:30:00", "08:30:00", ",5", " @ 08:30:00 (vol=5)");
    const LogLines noVolume{"2 [tasks/PlayMessage.cpp] Invalid volume=b, not used"};
    play("a volume that is no number", "08:30:00", "08:30:00", "a,b,c", "a @ 08:30:00 (vol=-1)", noVolume);
    const LogLines emptyVolume{"2 [tasks/PlayMessage.cpp] Invalid volume=, not used"};
    play("an empty volume", "08:30:00", "08:30:00", "a,,c", "a @ 08:30:00 (vol=-1)", emptyVolume);
    // The task reads the start time as written, and by a stricter rule.
    play("a task's time wants two digits each", "8:30:00", "08:30:00", "a", "a @  (vol=-1)");
    play("a task's time wants three parts", "08:30:00:00", "08:30:00", "a", "a @  (vol=-1)");
    play("a time that is none", "25:00:00", "25:00:00", "a", "a @  (vol=-1)");
    play("numbers wider than two digits are shown whole", "100:200:300", "100:200:300", "a", "a @  (vol=-1)");
    play("a negative number keeps its sign", "-1:-5:-30", "-1:-5:-30", "a", "a @  (vol=-1)");
}

void ActionLinesTest::ALineLogsItsSummaryAndCreatesItsTask()
{
    QFETCH(QByteArray, line);
    QFETCH(LogLines, log);
    QFETCH(int, type);
    const Action action(QString::fromUtf8(line));
    EXPECT_LOG(9, (log));
    QVERIFY(action.m_task != nullptr);
    QCOMPARE(static_cast<int>(action.m_task->m_type), type);
    QCOMPARE(action.m_task->m_identifier, QString());
    QCOMPARE(action.m_task->GetDelayable_s(), 0U);
    EXPECT_REQUESTS(Bus(), {});
}

void ActionLinesTest::ARejectedLineLogsItsSummaryAndTheReason_data()
{
    QTest::addColumn<QByteArray>("tail");
    QTest::addColumn<QByteArray>("task");
    QTest::addColumn<QByteArray>("parameters");
    QTest::addColumn<QByteArray>("reason");
    const auto row = [](const char* name, const QByteArray& tail, const QByteArray& task, const QByteArray& parameters,
                        const QByteArray& reason) { QTest::newRow(name) << tail << task << parameters << reason; };
    row("RecordMic", "RecordMic", "RecordMic (type=3)", "", "Unknown task (3)");
    row("RecordMic by number", "3|x", "3 (type=3)", "x", "Unknown task (3)");
    row("RecordVideo", "RecordVideo|1", "RecordVideo (type=7)", "1", "Unknown task (7)");
    row("RecordVideo by number", "7", "7 (type=7)", "", "Unknown task (7)");
    row("a number without a task", "42|a,b", "42 (type=42)", "a,b", "Unknown task (42)");
    row("the number of the unknown", "99", "99 (type=99)", "", "Unknown task (99)");
    row("the first number without a name", "20", "20 (type=20)", "", "Unknown task (20)");
    row("a negative number", "-1", "-1 (type=-1)", "", "Unknown task (-1)");
    row("the greatest number", "2147483647", "2147483647 (type=2147483647)", "", "Unknown task (2147483647)");
    row("a name that is none", "Sing", "Sing (type=99)", "", "Unknown task (99)");
    row("a name in another case", "stopmessage", "stopmessage (type=99)", "", "Unknown task (99)");
    row("EnableAux with a capital letter", "EnableAux|1", "EnableAux (type=99)", "1", "Unknown task (99)");
    row("RequestPddAction by name", "RequestPddAction|1,1", "RequestPddAction (type=99)", "1,1", "Unknown task (99)");
    row("Stoptream as the log has it", "Stoptream", "Stoptream (type=99)", "", "Unknown task (99)");
    row("an empty name before parameters", "|x", " (type=99)", "x", "Unknown task (99)");
    const QByteArray play = "PlayMessage (type=1)";
    const QByteArray reason = "Wrong task parameters (PlayMessage)";
    row("PlayMessage without parameters", "PlayMessage", play, "", reason);
    row("PlayMessage with an empty parameter text", "PlayMessage|", play, "", reason);
    row("PlayMessage with a parameter text of blanks", "PlayMessage|  ", play, "", reason);
    row("PlayMessage whose parameters ten fields lose", "PlayMessage|a|b", play, "", reason);
    row("PlayMessage by number", "1", "1 (type=1)", "", reason);
}

void ActionLinesTest::ARejectedLineLogsItsSummaryAndTheReason()
{
    QFETCH(QByteArray, tail);
    QFETCH(QByteArray, task);
    QFETCH(QByteArray, parameters);
    QFETCH(QByteArray, reason);
    const QByteArray line = "1111111|08:30:00|*|*|*|||" + tail;
    QVERIFY_THROWS_EXCEPTION(std::exception, Action(QString::fromUtf8(line)));
    const LogLines rejection{"1 [Action.cpp] " + reason};
    EXPECT_LOG(9, (Summary(line, "08:30:00", task, parameters) + rejection));
}

void ActionLinesTest::ALineThatLacksFieldsIsRejectedAtOnce_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("reason");
    const auto row = [](const char* name, const QByteArray& line, const QByteArray& reason) {
        QTest::newRow(name) << line << reason;
    };
    const auto fields = [&row](const char* name, const QByteArray& line, int count) {
        row(name, line, "Wrong action fields (" + QByteArray::number(count) + " found, at least 8 expected)");
    };
    fields("no field", "", 0);
    fields("a lone number sign", "#", 1);
    fields("one field", "1111111", 1);
    fields("seven fields", "1111111|08:30:00|*|*|*||", 6);
    fields("seven fields and text", "1111111|08:30:00|*|*|*||x", 7);
    fields("an empty eighth field at the end is none", "1111111|08:30:00|*|*|*|||", 7);
    fields("another separator", "1111111;08:30:00;*;*;*;;;StopMessage", 1);
    const auto start = [&row](const char* name, const QByteArray& text) {
        row(name, "1111111|" + text + "|*|*|*|||StopMessage",
            "Wrong action start time (" + text + ": hour:minute:second expected)");
    };
    start("an empty start time", "");
    start("an hour alone", "08");
    start("two parts", "08:30");
    start("an empty third part at the end is none", "08:30:");
    start("another separator in the start time", "08.30.00");
}

void ActionLinesTest::ALineThatLacksFieldsIsRejectedAtOnce()
{
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, reason);
    QVERIFY_THROWS_EXCEPTION(std::exception, Action(QString::fromUtf8(line)));
    EXPECT_LOG(9, {"9 [Action.cpp] >>> Action line: " + line, "1 [Action.cpp] " + reason});
}

void ActionLinesTest::AnOddLineIsNeverFatal_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("a megabyte of separators") << u"1111111|08:30:00"_s + QString(1'000'000, u'|');
    QTest::newRow("a megabyte in a field") << u"1111111|08:30:00|"_s + QString(1'000'000, u'9') + u"|*|*|||99"_s;
    QTest::newRow("a megabyte of parameters") << u"1111111|08:30:00|*|*|*|||99|"_s + u"a,"_s.repeated(500'000);
    QTest::newRow("a NUL in a field") << u"1111111|08:30:00|\0|*|*|||99"_s;
    QTest::newRow("characters that are no text") << u"1111111|08:30:00|\ufffd|\ufffe|"_s + QChar(0xd800) + u"|||99"_s;
    QTest::newRow("format characters") << u"%n%s%d|%s:%n:%d|%s|%n|%d|%s|%n|%s|%n"_s;
}

void ActionLinesTest::AnOddLineIsNeverFatal()
{
    QFETCH(QString, line);
    QVERIFY_THROWS_EXCEPTION(std::exception, Action{line});
    const QList<LogRecord> errors = LogRecorder::Records(2);
    QCOMPARE(errors.size(), 1);
    QCOMPARE(errors[0].level, 1U);
    QCOMPARE(LogRecorder::Messages(2)[0], u"Unknown task (99)"_s);
    for (const LogRecord& record : LogRecorder::Records())
        QVERIFY(record.text.size() <= 511);
    LogRecorder::Clear();
}

void ActionLinesTest::APddRequestIsForwarded()
{
    Action action(u"1111111|08:30:00|*|*|*|||StopMessage"_s);
    const QSignalSpy forwarded(&action, &Action::PddActionRequested);
    action.OnPddActionRequest(STREAM_MIC, true);
    action.OnPddActionRequest(NONE, false);
    QCOMPARE(forwarded.size(), 2);
    QCOMPARE(forwarded[0][0].value<PDD_ACTION>(), STREAM_MIC);
    QCOMPARE(forwarded[0][1], QVariant(true));
    QCOMPARE(forwarded[1][0].value<PDD_ACTION>(), NONE);
    QCOMPARE(forwarded[1][1], QVariant(false));
}

OZNA_CASE(ActionLines, ActionLinesTest)
#include "tst_ActionLines.moc"
