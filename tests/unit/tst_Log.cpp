#include "Globals.h"
#include "Log.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"

#include <QProcess>
#include <QScopeGuard>
#include <QStringDecoder>
#include <QTemporaryDir>

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

constexpr Log::Site SITE{"[Action.cpp:7] "};
const QByteArray PREFIX = "[Action.cpp:7] "_ba;
// What is left for the message beside the prefix and the terminator.
const qsizetype ROOM = 511 - PREFIX.size();

} // namespace

class LogTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ARecordIsPrefixAndMessage_data();
    void ARecordIsPrefixAndMessage();
    void ARecordWithoutArgumentsIsItsFormat();
    void ARecordNamesItsPlace();
    void TheMessageIsFormatted();
    void EachLevelReachesTheLogClient_data();
    void EachLevelReachesTheLogClient();
    void TheOriginIsTheSchedulerObject();
    void AnotherOriginReachesTheLogClient();
    void WithoutLogClientARecordIsDropped();
    void WhatIsToldIsTheMessageOfItsRecord_data();
    void WhatIsToldIsTheMessageOfItsRecord();
    void ACommaOfTheUsersLocaleStaysOutOfARecord();
};

void LogTest::ARecordIsPrefixAndMessage_data()
{
    Rows<QByteArray>::Add({
        {"plain text", "Starting schedule..."},
        {"an empty message", ""},
        {"a trailing newline is the client's business", "PlayFile error: 3\n"},
        {"percent signs in an argument are text", "100% %s %n %d %%"},
        {"brackets are text", "[x:1] y"},
        {"blanks at both ends stay", "  Dow:    0x7f (1111111) "},
        {"UTF-8", "caf\xc3\xa9 \xe2\x82\xac"},
    });
}

void LogTest::ARecordIsPrefixAndMessage()
{
    const QByteArray& message = Rows<QByteArray>::Current();
    OZNA_LOG_AT(SITE, LEVEL_NORMAL, "%s", message.constData());
    QCOMPARE(LogRecorder::Records().size(), 1);
    QCOMPARE(LogRecorder::Records()[0].text, PREFIX + message);
}

void LogTest::ARecordWithoutArgumentsIsItsFormat()
{
    OZNA_LOG_AT(SITE, LEVEL_NORMAL, "Starting schedule...");
    OZNA_LOG_AT(SITE, LEVEL_NORMAL, "100%%");
    OZNA_LOG_AT(SITE, LEVEL_NORMAL, " caf\xc3\xa9 \n");
    const QByteArrayList expected{PREFIX + "Starting schedule...", PREFIX + "100%", PREFIX + " caf\xc3\xa9 \n"};
    for (qsizetype i = 0; i < expected.size(); ++i)
        QCOMPARE(LogRecorder::Records()[i].text, expected[i]);
}

void LogTest::ARecordNamesItsPlace()
{
    OZNA_LOG(LEVEL_NORMAL, "message");
    const QByteArray place = '[' + QByteArray(__FILE__) + ':' + QByteArray::number(__LINE__ - 1) + "] message";
    QCOMPARE(LogRecorder::Records()[0].text, place);
}

void LogTest::TheMessageIsFormatted()
{
    OZNA_LOG_AT(SITE, LEVEL_DETAIL, "Start:  %02d:%02d:%02d 0x%x %u %s%%", 8, 5, 0, 0x7fU, 4294967295U, "ok");
    QCOMPARE(LogRecorder::Records()[0].text, PREFIX + "Start:  08:05:00 0x7f 4294967295 ok%");
}

void LogTest::EachLevelReachesTheLogClient_data()
{
    Rows<LogLevel, unsigned int>::Add({
        {"errors are 1", LEVEL_ERROR, 1U},
        {"warnings are 2", LEVEL_WARNING, 2U},
        {"progress is 4", LEVEL_NORMAL, 4U},
        {"details are 5", LEVEL_DETAIL, 5U},
        {"trace is 9", LEVEL_TRACE, 9U},
    });
}

void LogTest::EachLevelReachesTheLogClient()
{
    const auto& [level, number] = Rows<LogLevel, unsigned int>::Current();
    OZNA_LOG_AT(SITE, level, "text");
    EXPECT_LOG(9, {QByteArray::number(number) + " [Action.cpp] text"});
}

void LogTest::TheOriginIsTheSchedulerObject()
{
    OZNA_LOG(LEVEL_NORMAL, "text");
    QCOMPARE(LogRecorder::Records()[0].origin, "/com/kestrelix/ozna/scheduler/schedulerobj"_ba);
}

void LogTest::AnotherOriginReachesTheLogClient()
{
    OZNA_LOG_FROM("/another/object", LEVEL_NORMAL, "text");
    QCOMPARE(LogRecorder::Records()[0].origin, "/another/object"_ba);
    QVERIFY(LogRecorder::Records()[0].text.endsWith("] text"));
}

void LogTest::WithoutLogClientARecordIsDropped()
{
    LogInterface* const client = std::exchange(_logInterface, nullptr);
    OZNA_LOG(LEVEL_ERROR, "text");
    _logInterface = client;
    EXPECT_LOG(9, {});
}

void LogTest::WhatIsToldIsTheMessageOfItsRecord_data()
{
    Rows<QByteArray, QByteArray>::Add({
        {"plain text", "Unknown task (3)", "Unknown task (3)"},
        {"blanks at its end", "Unknown task (3) \n", "Unknown task (3)"},
        {"a cut", QByteArray(ROOM + 1, 'x'), QByteArray(ROOM, 'x')},
    });
}

void LogTest::WhatIsToldIsTheMessageOfItsRecord()
{
    const auto& [message, told] = Rows<QByteArray, QByteArray>::Current();
    QCOMPARE(OZNA_TELL_AT(SITE, LEVEL_ERROR, "%s", message.constData()).toUtf8(), told);
    QCOMPARE(LogRecorder::Records().size(), 1);
    QCOMPARE(LogRecorder::Records()[0].text, PREFIX + message.first(std::min(message.size(), ROOM)));
    LogRecorder::Clear();
    LogInterface* const client = std::exchange(_logInterface, nullptr);
    const QString silent = OZNA_TELL_AT(SITE, LEVEL_ERROR, "%s", message.constData());
    _logInterface = client;
    QCOMPARE(silent.toUtf8(), told);
    EXPECT_LOG(9, {});
}

void LogTest::ACommaOfTheUsersLocaleStaysOutOfARecord()
{
    const QTemporaryDir locales;
    const QString source = QStringLiteral(OZNA_LOCALE_DIR);
    // It complains of all that a whole locale has besides.
    QProcess::execute(u"localedef"_s, {u"--force"_s, u"--quiet"_s, u"-f"_s, source + u"/charmap"_s, u"-i"_s,
                                       source + u"/comma"_s, locales.filePath(u"comma"_s)});
    qputenv("LOCPATH", locales.path().toLocal8Bit());
    const auto restore = qScopeGuard([] {
        std::setlocale(LC_NUMERIC, "C");
        qunsetenv("LOCPATH");
    });
    QVERIFY(std::setlocale(LC_NUMERIC, "comma") != nullptr);
    const auto shown = [] {
        std::array<char, 8> text{};
        static_cast<void>(std::snprintf(text.data(), text.size(), "%.2f", 98.5));
        return QByteArray(text.data());
    };
    QCOMPARE(shown(), "98,50"_ba);
    OZNA_LOG_AT(SITE, LEVEL_NORMAL, "%.2f", 98.5);
    QCOMPARE(LogRecorder::Records()[0].text, PREFIX + "98.50");
    // What else the process shows is shown as the user wants it.
    QCOMPARE(shown(), "98,50"_ba);
}

OZNA_CASE(Log, LogTest)
#include "tst_Log.moc"
