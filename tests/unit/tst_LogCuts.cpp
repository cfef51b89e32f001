#include "Log.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"

using namespace Qt::StringLiterals;

namespace
{

constexpr Log::Site SITE{"[Action.cpp:7] "};
const QByteArray PREFIX = "[Action.cpp:7] "_ba;
// What is left for the message beside the prefix and the terminator.
const qsizetype ROOM = 511 - PREFIX.size();

} // namespace

// A record that would be longer than the log client takes.
class LogCutsTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void ALongMessageIsCut_data();
    void ALongMessageIsCut();
    void ACutLeavesNoHalfCharacter_data();
    void ACutLeavesNoHalfCharacter();
    void ACutOfWhatIsNoTextLeavesThePrefix_data();
    void ACutOfWhatIsNoTextLeavesThePrefix();
    void AnOverlongPrefixIsCutToo();
};

void LogCutsTest::ALongMessageIsCut_data()
{
    Rows<qsizetype, qsizetype>::Add({
        {"one less than fits", ROOM - 1, ROOM - 1},
        {"what just fits", ROOM, ROOM},
        {"one more than fits", ROOM + 1, ROOM},
        {"the size of the buffer", qsizetype(512), ROOM},
        {"a megabyte", qsizetype(1'000'000), ROOM},
    });
}

void LogCutsTest::ALongMessageIsCut()
{
    const auto& [length, kept] = Rows<qsizetype, qsizetype>::Current();
    OZNA_LOG_AT(SITE, LEVEL_NORMAL, "%s", QByteArray(length, 'x').constData());
    QCOMPARE(LogRecorder::Records()[0].text, PREFIX + QByteArray(kept, 'x'));
}

void LogCutsTest::ACutLeavesNoHalfCharacter_data()
{
    QTest::addColumn<QByteArray>("character");
    QTest::addColumn<int>("fitting"); // how many of its bytes there is room for
    for (const QByteArray& character : {"\xc3\xa9"_ba, "\xe2\x82\xac"_ba, "\xe0\xa4\xb9"_ba, "\xf0\x9f\x94\x94"_ba})
    {
        for (int fitting = 0; fitting <= character.size(); ++fitting)
            QTest::addRow("%d bytes of %s", fitting, character.toHex().constData()) << character << fitting;
    }
}

void LogCutsTest::ACutLeavesNoHalfCharacter()
{
    QFETCH(QByteArray, character);
    QFETCH(int, fitting);
    const QByteArray before(ROOM - fitting, 'x');
    const bool whole = fitting == character.size();
    for (const QByteArray& behind : {QByteArray(), QByteArray(100, 'y')})
    {
        LogRecorder::Clear();
        const QByteArray expected = PREFIX + before + (whole ? character : QByteArray());
        OZNA_LOG_AT(SITE, LEVEL_NORMAL, "%s", (before + character + behind).constData());
        QCOMPARE(LogRecorder::Records()[0].text, expected);
        // The C library prints what has a precision.
        OZNA_LOG_AT(SITE, LEVEL_NORMAL, "%.1000s", (before + character + behind).constData());
        QCOMPARE(LogRecorder::Records()[1].text, expected);
    }
}

void LogCutsTest::ACutOfWhatIsNoTextLeavesThePrefix_data()
{
    Rows<char>::Add({
        {"continuation bytes alone", '\x80'},
        {"leads of two bytes alone", '\xc3'},
        {"leads of four bytes alone", '\xf0'},
        {"bytes that UTF-8 never has", '\xff'},
    });
}

void LogCutsTest::ACutOfWhatIsNoTextLeavesThePrefix()
{
    const char& byte = Rows<char>::Current();
    OZNA_LOG_AT(SITE, LEVEL_NORMAL, "%s", QByteArray(600, byte).constData());
    const QByteArray text = LogRecorder::Records()[0].text;
    QVERIFY(text.startsWith(PREFIX));
    QCOMPARE(text.mid(PREFIX.size()).count(byte), text.size() - PREFIX.size());
    // A cut takes one character at most.
    QVERIFY(text.size() <= 511);
    QVERIFY(text.size() > 511 - 4);
}

void LogCutsTest::AnOverlongPrefixIsCutToo()
{
    const QByteArray prefix(600, 'f');
    OZNA_LOG_AT(Log::Site{prefix.constData()}, LEVEL_NORMAL, "%s", "message");
    OZNA_LOG_AT(Log::Site{prefix.constData()}, LEVEL_NORMAL, "message");
    QCOMPARE(LogRecorder::Records()[0].text, QByteArray(511, 'f'));
    QCOMPARE(LogRecorder::Records()[1].text, QByteArray(511, 'f'));
}

OZNA_CASE(LogCuts, LogCutsTest)
#include "tst_LogCuts.moc"
