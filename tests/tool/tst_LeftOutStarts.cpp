#include "CommandCall.h"
#include "Suite.h"

#include <QTest>

using namespace Qt::StringLiterals;

// In the nights in which the clocks are changed a start is due at the time that its line has.
class LeftOutStartsTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void NextHasTheTimeOfTheLine_data();
    void NextHasTheTimeOfTheLine();
    void ARehearsalTellsThatTheClocksArePutForward();
    void ARehearsalTellsNothingUntrueWhereTheyArePutBack();
    void ADifferenceHasTheTimeOfTheLine();
    void ALateStartIsDueWhenTheWallClockShowedItsTime_data();
    void ALateStartIsDueWhenTheWallClockShowedItsTime();

private:
    [[nodiscard]] QString Run(const QString& command, const QString& options) const
    {
        return m_call.Run(u"%1 s.csv --tz Europe/Rome %2"_s.arg(command, options).split(u' ')).output;
    }

    CommandCall m_call;
};

void LeftOutStartsTest::initTestCase()
{
    m_call.Write(u"night"_s, "first.mp3;60\nsecond.mp3;60\n");
    m_call.Write(u"long"_s, "first.mp3;43200\nsecond.mp3;60\n");
}

void LeftOutStartsTest::NextHasTheTimeOfTheLine_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("table");
    QTest::newRow("a playlist that the clocks are put forward over")
        << QByteArray("0000001|02:59:30|*|*|*|20240331||PlayPlaylist|night\n") << u"2024-03-30T12:00"_s
        << u"Sun 2024-03-31 02:59:30  in 14 h         PlayPlaylist  night          line 1\n"
           "                         from track 2, starts Sun 2024-03-31 03:00:00, late\n"_s;
    QTest::newRow("a message for a time that the clocks leave out")
        << QByteArray("1111111|02:00:05|*|*|*|||PlayMessage|gong.mp3\n") << u"2024-03-31"_s
        << u"Sun 2024-03-31 02:00:05  in 2 h          PlayMessage   gong.mp3       line 1\n"
           "                         a time that the clocks leave out\n"_s;
    QTest::newRow("a message behind the hour that comes twice, asked for before its first end")
        << QByteArray("1111111|03:00:05|*|*|*|||PlayMessage|gong.mp3\n") << u"2024-10-27"_s
        << u"Sun 2024-10-27 03:00:05  in 4 h          PlayMessage   gong.mp3       line 1\n"_s;
    QTest::newRow("a message behind it")
        << QByteArray("1111111|03:00:05|*|*|*|||PlayMessage|gong.mp3\n") << u"2024-03-31"_s
        << u"Sun 2024-03-31 03:00:05  in 2 h          PlayMessage   gong.mp3       line 1\n"_s;
}

void LeftOutStartsTest::NextHasTheTimeOfTheLine()
{
    QFETCH(const QByteArray, line);
    QFETCH(const QString, from);
    QFETCH(const QString, table);
    m_call.Write(u"s.csv"_s, line);
    QCOMPARE(Run(u"next"_s, u"-n 1 --from "_s + from), table);
}

void LeftOutStartsTest::ARehearsalTellsThatTheClocksArePutForward()
{
    m_call.Write(u"s.csv"_s, "0000001|02:59:30|*|*|*|20240331||PlayPlaylist|night\n"
                             "1111111|02:00:05|*|*|*|||PlayMessage|gong.mp3\n");
    const QString table = Run(u"rehearse"_s, u"--from 2024-03-31"_s);
    QVERIFY2(table.contains(u"gong.mp3 for 02:00:05         the clocks are put forward over 02:00:05\n"_s),
             qPrintable(table));
    QVERIFY2(table.contains(u"late: by 30 s: the clocks are put forward over 02:59:30\n"_s), qPrintable(table));
    // A moment that is none has that of the change.
    QVERIFY(Run(u"rehearse"_s, u"--from 2024-03-31 --csv"_s)
                .contains(u"\n2024-03-31T03:00:00+02:00,2024-03-31T03:00:00+02:00,1,PlayPlaylist,late"_s.replace(
                    u"\n"_s, u"\r\n"_s)));
}

void LeftOutStartsTest::ARehearsalTellsNothingUntrueWhereTheyArePutBack()
{
    m_call.Write(u"s.csv"_s, "1111111|03:00:05|*|*|*|||PlayMessage|gong.mp3\n");
    const QString table = Run(u"rehearse"_s, u"--from 2024-10-27"_s);
    QVERIFY2(table.startsWith(u"Sun 2024-10-27\n"
                              "  02:59:57      1  PlayMessage     gong.mp3 for 03:00:05\n"_s),
             qPrintable(table));
    QVERIFY2(!table.contains(u"put forward"_s), qPrintable(table));
    QVERIFY(Run(u"rehearse"_s, u"--from 2024-10-27 --csv"_s)
                .contains(u"\r\n2024-10-27T02:59:57+02:00,2024-10-27T03:00:05+01:00,1,PlayMessage,"_s));
}

void LeftOutStartsTest::ADifferenceHasTheTimeOfTheLine()
{
    m_call.Write(u"s.csv"_s, "1111111|02:00:05|*|*|*|||PlayMessage|gong.mp3\n");
    m_call.Write(u"new.csv"_s, "1111111|02:00:05|*|*|*|||PlayMessage|bell.mp3\n");
    const QString changes = Run(u"diff"_s, u"new.csv --from 2024-03-31 --days 1"_s);
    QVERIFY2(changes.startsWith(u"! 02:00:05 "_s), qPrintable(changes));
}

void LeftOutStartsTest::ALateStartIsDueWhenTheWallClockShowedItsTime_data()
{
    QTest::addColumn<QString>("date"); // of a change of the clocks
    QTest::addColumn<QString>("due");
    QTest::newRow("forward") << u"2024-03-31"_s << u"2024-03-31T00:30:00+01:00"_s;
    QTest::newRow("back") << u"2024-10-27"_s << u"2024-10-27T00:30:00+02:00"_s;
}

void LeftOutStartsTest::ALateStartIsDueWhenTheWallClockShowedItsTime()
{
    QFETCH(const QString, date);
    QFETCH(const QString, due);
    m_call.Write(u"s.csv"_s, "1111111|00:30:00|*|*|*|||PlayPlaylist|long\n");
    const QString csv = Run(u"rehearse"_s, u"--csv --start-at %1T06:00 --from %1T06:00"_s.arg(date));
    QVERIFY2(
        csv.contains(u"T06:00:03+0%1:00,"_s.arg(date.contains(u"-03-"_s) ? 2 : 1) + due + u",1,PlayPlaylist,late"_s),
        qPrintable(csv));
}

OZNA_CASE(LeftOutStarts, LeftOutStartsTest)
#include "tst_LeftOutStarts.moc"
