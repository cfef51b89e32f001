#include "Action.h"
#include "KindTable.h"
#include "Rows.h"
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
    void AStartTimeHasThreeParts();
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

    const auto play = [&row](const char* name, const QByteArray& start, const QByteArray& shownStart) {
        row(name, "1111111|" + start + "|*|*|*|||PlayMessage|a", shownStart, "PlayMessage (type=1)", "a", 1,
            {"4 [tasks/PlayMessage.cpp] TASK CREATED | PlayMessage: a @  (vol=-1)"});
    };
    // The task reads the start time as written, and by a stricter rule.
    play("a task's time wants two digits each", "8:30:00", "08:30:00");
    play("a task's time wants three parts", "08:30:00:00", "08:30:00");
    play("a time that is none", "25:00:00", "25:00:00");
    play("numbers wider than two digits are shown whole", "100:200:300", "100:200:300");
    play("a negative number keeps its sign", "-1:-5:-30", "-1:-5:-30");
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
    const QByteArray next = QByteArray::number(static_cast<int>(AllKinds().size()));
    Rows<QByteArray, QByteArray, QByteArray, QByteArray>::Add({
        {"a kind that nothing serves", "RecordMic", "RecordMic (type=3)", "", "Unknown task (3)"},
        {"such a kind by number", "7|x", "7 (type=7)", "x", "Unknown task (7)"},
        {"a number without a task", "42|a,b", "42 (type=42)", "a,b", "Unknown task (42)"},
        {"the number of the unknown", "99", "99 (type=99)", "", "Unknown task (99)"},
        {"the first number without a kind", next, next + " (type=" + next + ")", "", "Unknown task (" + next + ")"},
        {"a negative number", "-1", "-1 (type=-1)", "", "Unknown task (-1)"},
        {"the greatest number", "2147483647", "2147483647 (type=2147483647)", "", "Unknown task (2147483647)"},
        {"a name that is none", "Sing", "Sing (type=99)", "", "Unknown task (99)"},
        {"a name in another case", "stopmessage", "stopmessage (type=99)", "", "Unknown task (99)"},
        {"a name that only the log has", "EnableAux|1", "EnableAux (type=99)", "1", "Unknown task (99)"},
        {"an empty name before parameters", "|x", " (type=99)", "x", "Unknown task (99)"},
        {"no parameters", "PlayMessage", "PlayMessage (type=1)", "", "Wrong task parameters (PlayMessage)"},
        {"blank parameters", "PlayMessage|  ", "PlayMessage (type=1)", "", "Wrong task parameters (PlayMessage)"},
        {"no parameters, by number", "1", "1 (type=1)", "", "Wrong task parameters (PlayMessage)"},
    });
}

void ActionLinesTest::ARejectedLineLogsItsSummaryAndTheReason()
{
    const auto& [tail, task, parameters, reason] = Rows<QByteArray, QByteArray, QByteArray, QByteArray>::Current();
    const QByteArray line = "1111111|08:30:00|*|*|*|||" + tail;
    QVERIFY_THROWS_EXCEPTION(std::exception, Action(QString::fromUtf8(line)));
    const LogLines rejection{"1 [Action.cpp] " + reason};
    EXPECT_LOG(9, (Summary(line, "08:30:00", task, parameters) + rejection));
}

void ActionLinesTest::ALineThatLacksFieldsIsRejectedAtOnce_data()
{
    Rows<QByteArray, int>::Add({
        {"no field", "", 0},
        {"a lone number sign", "#", 1},
        {"one field", "1111111", 1},
        {"seven fields", "1111111|08:30:00|*|*|*||", 6},
        {"seven fields and text", "1111111|08:30:00|*|*|*||x", 7},
        {"an empty eighth field at the end is none", "1111111|08:30:00|*|*|*|||", 7},
        {"another separator", "1111111;08:30:00;*;*;*;;;StopMessage", 1},
    });
}

void ActionLinesTest::ALineThatLacksFieldsIsRejectedAtOnce()
{
    const auto& [line, count] = Rows<QByteArray, int>::Current();
    QVERIFY_THROWS_EXCEPTION(std::exception, Action(QString::fromUtf8(line)));
    EXPECT_LOG(9,
               {"9 [Action.cpp] >>> Action line: " + line,
                "1 [Action.cpp] Wrong action fields (" + QByteArray::number(count) + " found, at least 8 expected)"});
}

void ActionLinesTest::AStartTimeHasThreeParts()
{
    // An empty third part at the end is none.
    for (const QByteArray start : {"", "08", "08:30", "08:30:", "08.30.00"})
    {
        const QByteArray line = "1111111|" + start + "|*|*|*|||StopMessage";
        QVERIFY_THROWS_EXCEPTION(std::exception, Action(QString::fromUtf8(line)));
        EXPECT_LOG(9, {"9 [Action.cpp] >>> Action line: " + line,
                       "1 [Action.cpp] Wrong action start time (" + start + ": hour:minute:second expected)"});
    }
}

void ActionLinesTest::AnOddLineIsNeverFatal_data()
{
    const QString begin = u"1111111|08:30:00"_s;
    Rows<QString>::Add({
        {"a megabyte of separators", begin + QString(1'000'000, u'|')},
        {"a megabyte in a field", begin + u'|' + QString(1'000'000, u'9') + u"|*|*|||99"_s},
        {"a megabyte of parameters", begin + u"|*|*|*|||99|"_s + u"a,"_s.repeated(500'000)},
        {"a NUL in a field", begin + u"|\0|*|*|||99"_s},
        {"characters that are no text", begin + u"|\ufffd|\ufffe|"_s + QChar(0xd800) + u"|||99"_s},
        {"format characters", u"%n%s%d|%s:%n:%d|%s|%n|%d|%s|%n|%s|%n"_s},
    });
}

void ActionLinesTest::AnOddLineIsNeverFatal()
{
    const QString line = Rows<QString>::Current();
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
