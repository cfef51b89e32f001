#include "Globals.h"
#include "Log.h"
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

constexpr Log::Site SITE{"Action.cpp", 7};
const QByteArray PREFIX = QByteArrayLiteral("[Action.cpp:7] ");
// What is left for the message beside the prefix and the terminator.
const qsizetype ROOM = 511 - PREFIX.size();

} // namespace

class LogTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ARecordIsPrefixAndMessage_data();
    void ARecordIsPrefixAndMessage();
    void ALongMessageIsCut_data();
    void ALongMessageIsCut();
    void ACutLeavesNoHalfCharacter_data();
    void ACutLeavesNoHalfCharacter();
    void ACutOfWhatIsNoTextLeavesThePrefix_data();
    void ACutOfWhatIsNoTextLeavesThePrefix();
    void AnOverlongPrefixIsCutToo();
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
    QTest::addColumn<QByteArray>("message");
    QTest::newRow("plain text") << "Starting schedule..."_ba;
    QTest::newRow("an empty message") << ""_ba;
    QTest::newRow("a trailing newline is the client's business") << "PlayFile error: 3\n"_ba;
    QTest::newRow("percent signs in an argument are text") << "100% %s %n %d %%"_ba;
    QTest::newRow("brackets are text") << "[x:1] y"_ba;
    QTest::newRow("blanks at both ends stay") << "  Dow:    0x7f (1111111) "_ba;
    QTest::newRow("UTF-8") << "caf\xc3\xa9 \xe2\x82\xac"_ba;
}

void LogTest::ARecordIsPrefixAndMessage()
{
    QFETCH(QByteArray, message);
    OZNA_LOG_AT(SITE, LEVEL_NORMAL, "%s", message.constData());
    QCOMPARE(LogRecorder::Records().size(), 1);
    QCOMPARE(LogRecorder::Records()[0].text, PREFIX + message);
}

void LogTest::ALongMessageIsCut_data()
{
    QTest::addColumn<qsizetype>("length");
    QTest::addColumn<qsizetype>("kept");
    QTest::newRow("one less than fits") << ROOM - 1 << ROOM - 1;
    QTest::newRow("what just fits") << ROOM << ROOM;
    QTest::newRow("one more than fits") << ROOM + 1 << ROOM;
    QTest::newRow("the size of the buffer") << qsizetype(512) << ROOM;
    QTest::newRow("a megabyte") << qsizetype(1'000'000) << ROOM;
}

void LogTest::ALongMessageIsCut()
{
    QFETCH(qsizetype, length);
    QFETCH(qsizetype, kept);
    OZNA_LOG_AT(SITE, LEVEL_NORMAL, "%s", QByteArray(length, 'x').constData());
    QCOMPARE(LogRecorder::Records()[0].text, PREFIX + QByteArray(kept, 'x'));
}

void LogTest::ACutLeavesNoHalfCharacter_data()
{
    QTest::addColumn<QByteArray>("character");
    QTest::addColumn<int>("fitting"); // how many of its bytes there is room for
    for (const QByteArray& character : {"\xc3\xa9"_ba, "\xe2\x82\xac"_ba, "\xe0\xa4\xb9"_ba, "\xf0\x9f\x94\x94"_ba})
    {
        for (int fitting = 0; fitting <= character.size(); ++fitting)
            QTest::addRow("%d bytes of %s", fitting, character.toHex().constData()) << character << fitting;
    }
}

void LogTest::ACutLeavesNoHalfCharacter()
{
    QFETCH(QByteArray, character);
    QFETCH(int, fitting);
    const QByteArray before(ROOM - fitting, 'x');
    const bool whole = fitting == character.size();
    for (const QByteArray& behind : {QByteArray(), QByteArray(100, 'y')})
    {
        LogRecorder::Clear();
        OZNA_LOG_AT(SITE, LEVEL_NORMAL, "%s", (before + character + behind).constData());
        QCOMPARE(LogRecorder::Records()[0].text, PREFIX + before + (whole ? character : QByteArray()));
    }
}

void LogTest::ACutOfWhatIsNoTextLeavesThePrefix_data()
{
    QTest::addColumn<char>("byte");
    QTest::newRow("continuation bytes alone") << '\x80';
    QTest::newRow("leads of two bytes alone") << '\xc3';
    QTest::newRow("leads of four bytes alone") << '\xf0';
    QTest::newRow("bytes that UTF-8 never has") << '\xff';
}

void LogTest::ACutOfWhatIsNoTextLeavesThePrefix()
{
    QFETCH(char, byte);
    OZNA_LOG_AT(SITE, LEVEL_NORMAL, "%s", QByteArray(600, byte).constData());
    const QByteArray text = LogRecorder::Records()[0].text;
    QVERIFY(text.startsWith(PREFIX));
    QCOMPARE(text.mid(PREFIX.size()).count(byte), text.size() - PREFIX.size());
    // A cut takes one character at most.
    QVERIFY(text.size() <= 511);
    QVERIFY(text.size() > 511 - 4);
}

void LogTest::AnOverlongPrefixIsCutToo()
{
    const QByteArray file(600, 'f');
    OZNA_LOG_AT((Log::Site{file.constData(), 1}), LEVEL_NORMAL, "%s", "message");
    QCOMPARE(LogRecorder::Records()[0].text, '[' + QByteArray(510, 'f'));
}

void LogTest::TheMessageIsFormatted()
{
    OZNA_LOG_AT(SITE, LEVEL_DETAIL, "Start:  %02d:%02d:%02d 0x%x %u %s%%", 8, 5, 0, 0x7fU, 4294967295U, "ok");
    QCOMPARE(LogRecorder::Records()[0].text, PREFIX + "Start:  08:05:00 0x7f 4294967295 ok%");
}

void LogTest::EachLevelReachesTheLogClient_data()
{
    QTest::addColumn<LogLevel>("level");
    QTest::addColumn<unsigned int>("number");
    QTest::newRow("errors are 1") << LEVEL_ERROR << 1U;
    QTest::newRow("warnings are 2") << LEVEL_WARNING << 2U;
    QTest::newRow("progress is 4") << LEVEL_NORMAL << 4U;
    QTest::newRow("details are 5") << LEVEL_DETAIL << 5U;
    QTest::newRow("trace is 9") << LEVEL_TRACE << 9U;
}

void LogTest::EachLevelReachesTheLogClient()
{
    QFETCH(LogLevel, level);
    QFETCH(unsigned int, number);
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
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<QByteArray>("told");
    QTest::newRow("plain text") << "Unknown task (3)"_ba
                                << "Unknown task (3)"_ba;
    QTest::newRow("blanks at its end") << "Unknown task (3) \n"_ba
                                       << "Unknown task (3)"_ba;
    QTest::newRow("a cut") << QByteArray(ROOM + 1, 'x') << QByteArray(ROOM, 'x');
}

void LogTest::WhatIsToldIsTheMessageOfItsRecord()
{
    QFETCH(QByteArray, message);
    QFETCH(QByteArray, told);
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
