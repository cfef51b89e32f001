#include "Rows.h"
#include "SchedulerAccess.h"
#include "SchedulerLines.h"
#include "SchedulerTest.h"
#include "Suite.h"

#include <QFile>
#include <QSignalSpy>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray STOP = "1111111|08:30:00|*|*|*|||StopMessage"_ba;
const QByteArray PLAY = "1111111|09:00:00|*|*|*|||PlayMessage|gong.mp3,70"_ba;

const LogLine STOP_CREATED("4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage");
const LogLine PLAY_CREATED("4 [tasks/PlayMessage.cpp] TASK CREATED | PlayMessage: gong.mp3 @ 09:00:00 (vol=70)");
const LogLine IGNORED("2 [Scheduler.cpp] Action ignored");

LogLine Loaded(int tasks)
{
    return {"4 [Scheduler.cpp] Schedule loaded (" + QByteArray::number(tasks) + " tasks)"};
}

LogLine Cut(int line)
{
    return {"2 [Scheduler.cpp] Schedule file may be cut: line " + QByteArray::number(line) + " has no line end"};
}

LogLine Rejected(const char* reason)
{
    return {QByteArray("1 [Action.cpp] ") + reason};
}

} // namespace

class ScheduleFileTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void AFileIsLoadedLineByLine_data();
    void AFileIsLoadedLineByLine();
    void ALineReachesItsActionUntrimmed();
    void AFileThatCannotBeOpenedIsNone_data();
    void AFileThatCannotBeOpenedIsNone();
    void AnyNameIsTakenAsItStands_data();
    void AnyNameIsTakenAsItStands();
    void ALongFileIsLoadedWhole();
    void AnActionsPddRequestReachesTheScheduler();
};

void ScheduleFileTest::AFileIsLoadedLineByLine_data()
{
    const LogLines noneLoaded{Loaded(0)};
    const LogLines stopLoaded{STOP_CREATED, Loaded(1)};
    const LogLines playLoaded{PLAY_CREATED, Loaded(1)};
    const LogLines stopCut{STOP_CREATED, Cut(1), Loaded(1)};
    const LogLines bothLoaded{STOP_CREATED, PLAY_CREATED, Loaded(2)};
    const LogLine fields = Rejected("Wrong action fields (1 found, at least 8 expected)");
    Rows<QByteArray, LogLines>::Add({
        {"an empty file", "", noneLoaded},
        {"a file of blanks", " \n\t\n\r\n\n \t \n", noneLoaded},
        {"one line", STOP + '\n', stopLoaded},
        {"one line without an end", STOP, stopCut},
        {"a last line without an end", STOP + '\n' + PLAY, {STOP_CREATED, PLAY_CREATED, Cut(2), Loaded(2)}},
        {"a last line that is cut", STOP + '\n' + PLAY.left(6), {STOP_CREATED, fields, IGNORED, Cut(2), Loaded(1)}},
        {"a comment without an end", STOP + "\n# the", {STOP_CREATED, Cut(2), Loaded(1)}},
        {"blanks without an end", STOP + "\r\n\r", {STOP_CREATED, Cut(2), Loaded(1)}},
        {"carriage returns without a line feed are one line",
         STOP + '\r' + PLAY + '\r',
         {Rejected("Unknown task (99)"), IGNORED, Cut(1), Loaded(0)}},
        {"a carriage return too many", STOP + "\r\r\n" + PLAY + "\r\r\n", bothLoaded},
        {"two lines", STOP + '\n' + PLAY + '\n', bothLoaded},
        {"file order is kept, not time order", PLAY + '\n' + STOP + '\n', {PLAY_CREATED, STOP_CREATED, Loaded(2)}},
        {"carriage returns", STOP + "\r\n" + PLAY + "\r\n", bothLoaded},
        {"the same line twice is two actions", STOP + '\n' + STOP + '\n', {STOP_CREATED, STOP_CREATED, Loaded(2)}},
        {"blank lines between", "\n" + STOP + "\n \n\n" + PLAY + '\n', bothLoaded},
        {"a comment", "# the morning\n" + STOP + '\n', stopLoaded},
        {"a line commented out", '#' + STOP + '\n' + PLAY + '\n', playLoaded},
        {"a comment behind a line takes the line with it", STOP + " # stop\n" + PLAY + '\n', playLoaded},
        {"a number sign after the first field", "1111111|#" + STOP.mid(8) + '\n', noneLoaded},
        {"a lone number sign is rejected", "#\n" + STOP + '\n', {fields, IGNORED, STOP_CREATED, Loaded(1)}},
        {"a number sign at the end stays with the line",
         STOP + "#\n",
         {Rejected("Unknown task (99)"), IGNORED, Loaded(0)}},
        {"a header is rejected",
         "Days|Start|Day\n" + STOP + '\n',
         {Rejected("Wrong action fields (3 found, at least 8 expected)"), IGNORED, STOP_CREATED, Loaded(1)}},
        {"rejected lines between good ones",
         STOP + "\nx\n" + PLAY + "\n1111111|08:30|*|*|*|||StopMessage\n",
         {STOP_CREATED, fields, IGNORED, PLAY_CREATED,
          Rejected("Wrong action start time (08:30: hour:minute:second expected)"), IGNORED, Loaded(2)}},
        {"every reason to reject",
         "1111111|08:30:00|*|*|*|||PlayMessage\n1111111|08:30:00|*|*|*|||3\n",
         {Rejected("Wrong task parameters (PlayMessage)"), IGNORED, Rejected("Unknown task (3)"), IGNORED, Loaded(0)}},
        {"a NUL makes a line of its own kind",
         QByteArray("\0\n", 2) + STOP + '\n',
         {fields, IGNORED, STOP_CREATED, Loaded(1)}},
    });
}

void ScheduleFileTest::AFileIsLoadedLineByLine()
{
    const auto& [content, loading] = Rows<QByteArray, LogLines>::Current();
    QStringList actions;
    for (const LogLine& line : loading)
    {
        if (line.shown == STOP_CREATED.shown)
            actions.append(u"StopMessage 08:30:00"_s);
        else if (line.shown == PLAY_CREATED.shown)
            actions.append(u"PlayMessage 09:00:00"_s);
    }
    Data().WriteSchedule(content);
    Create();
    Engine().Start();
    EXPECT_LOG(4, (SchedulerLines::Started(Data(), u"schedule.csv"_s, loading)));
    QCOMPARE(FarList(), actions);
    QCOMPARE(EarlyList(), QStringList());
}

void ScheduleFileTest::ALineReachesItsActionUntrimmed()
{
    Data().WriteSchedule(" \t" + STOP + " \t\n");
    Create();
    Engine().Start();
    QCOMPARE(LogRecorder::Messages(9).filter(u">>>"_s),
             QStringList(u">>> Action line:  \t"_s + QString::fromUtf8(STOP) + u" \t"_s));
}

void ScheduleFileTest::AFileThatCannotBeOpenedIsNone_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason"); // none where there is no such file
    const auto row = [](const char* what, const QString& name, const char* reason) {
        QTest::newRow(what) << name << QString::fromLatin1(reason);
    };
    row("a missing file", u"missing.csv"_s, "");
    row("a link to nothing", u"dangling"_s, "");
    row("an empty name", u""_s, "Is a directory");
    row("a folder", u"folder"_s, "Is a directory");
    row("a pipe", u"pipe"_s, "Not a regular file");
    row("a device", u"device"_s, "Not a regular file");
    row("the folder itself", u"."_s, "Is a directory");
    row("the folder above", u".."_s, "Is a directory");
    row("a path into a file", u"schedule.csv/x"_s, "Not a directory");
    row("a very long name", QString(100'000, u'x'), "File name too long");
}

void ScheduleFileTest::AFileThatCannotBeOpenedIsNone()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    Data().WriteSchedule(STOP + '\n');
    QVERIFY(::mkdir(QFile::encodeName(Data().SchedulePath(u"folder"_s)).constData(), 0700) == 0);
    QVERIFY(::mkfifo(QFile::encodeName(Data().SchedulePath(u"pipe"_s)).constData(), 0600) == 0);
    QVERIFY(QFile::link(u"/dev/null"_s, Data().SchedulePath(u"device"_s)));
    QVERIFY(QFile::link(u"missing.csv"_s, Data().SchedulePath(u"dangling"_s)));
    Create();
    Engine().Start();
    QCOMPARE(FarList().size(), 1);
    LogRecorder::Clear();

    QCOMPARE(Engine().SetScheduleFile(name), 0);
    QStringList told{u"No schedules programmed (schedule file not found)"_s};
    if (!reason.isEmpty())
        told.append(u"Schedule file open error: "_s + reason);
    const QStringList messages = LogRecorder::Messages(4);
    QCOMPARE(messages.mid(8), told + QStringList({u"Finding ready actions..."_s, u"Schedule started"_s}));
    QCOMPARE(LogRecorder::Messages(2), told.mid(1));
    LogRecorder::Clear();
    QCOMPARE(FarList(), QStringList());
    bool enabled = false;
    QString current;
    QCOMPARE(Engine().IsEnabled(enabled, current), 0);
    QCOMPARE(enabled, true);
    QCOMPARE(current, name);
    QVERIFY(SchedulerAccess::FarTimer(Engine()).isActive());
}

void ScheduleFileTest::AnyNameIsTakenAsItStands_data()
{
    Rows<QString>::Add({
        {"another file", u"other.csv"_s},
        {"no extension", u"other"_s},
        {"blanks in the name", u" a file .csv "_s},
        {"UTF-8 in the name", u"m\u00e4rz.csv"_s},
        {"percent signs in the name", u"100%s%n.csv"_s},
        {"a file of the folder above", u"../schedule/other.csv"_s},
    });
}

void ScheduleFileTest::AnyNameIsTakenAsItStands()
{
    const QString& name = Rows<QString>::Current();
    Data().WriteSchedule(STOP + '\n', name);
    Create();
    Engine().SetScheduleFile(name);
    const LogLines set{"4 [Scheduler.cpp] Schedule file set to " + name.toUtf8()};
    EXPECT_LOG(4, (set + SchedulerLines::RESTARTING + SchedulerLines::STOPPED +
                   SchedulerLines::Started(Data(), name, {STOP_CREATED, Loaded(1)})));
}

void ScheduleFileTest::ALongFileIsLoadedWhole()
{
    constexpr int COUNT = 5000;
    Data().WriteSchedule((STOP + "\n\n# comment\nx\n").repeated(COUNT));
    Create();
    Engine().Start();
    QVERIFY(LogRecorder::Messages(4).contains(u"Schedule loaded (5000 tasks)"_s));
    QCOMPARE(LogRecorder::Messages(2).count(u"Action ignored"_s), COUNT);
    QCOMPARE(FarList().size(), COUNT);
    LogRecorder::Clear();
}

void ScheduleFileTest::AnActionsPddRequestReachesTheScheduler()
{
    const QByteArray request = "1111111|08:30:00|*|*|*|||19|1,1";
    StartWith({request, request});
    const QSignalSpy expected(&Engine(), &Scheduler::ExpectedPddAction);
    for (const auto& action : SchedulerAccess::FarActions(Engine()))
        action->OnPddActionRequest(STREAM_MIC, true);
    EXPECT_LOG(9, {"4 [Scheduler.cpp] >>> Requesting PDD Action: action=STREAM_MIC, enable=1",
                   "4 [Scheduler.cpp] >>> Requesting PDD Action: action=STREAM_MIC, enable=1"});
    QCOMPARE(expected.size(), 2);
    QCOMPARE(expected[0], (QVariantList{1U, true}));
}

OZNA_CASE(ScheduleFile, ScheduleFileTest)
#include "tst_ScheduleFile.moc"
