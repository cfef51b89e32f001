#include "CommandCall.h"
#include "Suite.h"

#include <QTest>

using namespace Qt::StringLiterals;

// A message that is requested ahead of its time with an empty start time may be played at once: no output says that it
// waits.
class UntimedStartsTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void TheRequestTellsNoTime_data();
    void TheRequestTellsNoTime();
};

void UntimedStartsTest::TheRequestTellsNoTime_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("row");  // of a rehearsal
    QTest::addColumn<QString>("next"); // its lines

    const QString told = u"told no start time, it may play at once"_s;
    const QString indent(25, u' ');
    QTest::newRow("one digit of the hour")
        << QByteArray("1111111|8:30:00|*|*|*|||PlayMessage|gong.mp3\n")
        << u"  08:29:52      1  PlayMessage     gong.mp3                      "_s + told
        << u"Thu 2024-05-16 08:30:00  in 8 h 30 min   PlayMessage   gong.mp3       line 1\n"_s + indent + told + u'\n';
    QTest::newRow("a time of the next day")
        << QByteArray("1111111|24:00:05|*|*|*|||PlayMessage|gong.mp3\n")
        << u"  23:59:57      1  PlayMessage     gong.mp3                      "_s + told
        << u"Thu 2024-05-16 00:00:05  in 5 s          PlayMessage   gong.mp3       line 1\n"_s + indent + told +
               u"\nline 1 is asked for on the evening before\n"_s;
    QTest::newRow("two digits of each") << QByteArray("1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n")
                                        << u"  08:29:52      1  PlayMessage     gong.mp3 for 08:30:00"_s
                                        << u"Thu 2024-05-16 08:30:00  in 8 h 30 min   PlayMessage   gong.mp3       "
                                           "line 1\n"_s;
}

void UntimedStartsTest::TheRequestTellsNoTime()
{
    QFETCH(const QByteArray, line);
    QFETCH(const QString, row);
    QFETCH(const QString, next);
    const CommandCall call;
    call.Write(u"s.csv"_s, line);
    const QStringList rows = call.Run("rehearse s.csv --tz UTC --from 2024-05-16").output.split(u'\n');
    QVERIFY2(rows.contains(row), qPrintable(rows.join(u'\n')));
    // What was requested before that moment is not told twice.
    const QString from = line.startsWith("1111111|24") ? u"2024-05-15T23:59:50"_s : u"2024-05-16"_s;
    QCOMPARE(call.Run({u"next"_s, u"s.csv"_s, u"--tz"_s, u"UTC"_s, u"--from"_s, from, u"-n"_s, u"1"_s}).output,
             QString(next).replace(u"in 5 s "_s, u"in 15 s"_s));
}

OZNA_CASE(UntimedStarts, UntimedStartsTest)
#include "tst_UntimedStarts.moc"
