#include "CheckRun.h"
#include "CommandCall.h"
#include "Suite.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

const QString SCHEDULE = u"schedule/schedule.csv"_s;

} // namespace

// What a check says of lines together is what their rehearsal shows.
class CheckRehearsedTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void OfTwoValuesTheLaterLineComesLast();
    void OfTwoValuesOfOtherDaysTheOneStartedLastComesLast();
    void AStreamIsStoppedAsItBeginsInEitherOrder_data();
    void AStreamIsStoppedAsItBeginsInEitherOrder();
    void AStopAtAStartIsFoundWhereTheRehearsalHasIt_data();
    void AStopAtAStartIsFoundWhereTheRehearsalHasIt();
    void BothPlaylistsAreAskedFor();

private:
    // The lines that a command writes about a schedule.
    [[nodiscard]] QStringList Run(const QString& command, const QByteArray& schedule, const QStringList& options) const;
    [[nodiscard]] QStringList Check(const QByteArray& schedule) const
    {
        return Run(u"check"_s, schedule, {u"--today"_s, u"2024-05-15"_s}).filter(SCHEDULE + u':');
    }
    [[nodiscard]] QStringList Rehearse(const QByteArray& schedule, const QStringList& options = {}) const
    {
        return Run(u"rehearse"_s, schedule, QStringList{u"--from"_s, u"2024-05-20"_s, u"--days"_s, u"1"_s} + options);
    }
    [[nodiscard]] static bool HasOne(const QStringList& findings, const QString& kind)
    {
        return findings.size() == 1 && findings.first().endsWith(u" ["_s + kind + u']');
    }

    CommandCall m_call;
};

void CheckRehearsedTest::initTestCase()
{
    m_call.Write(u"playlists/morning"_s, "intro.mp3;60\nnews at eight.mp3;600\n");
    m_call.Write(u"playlists/evening"_s, "intro.mp3;60\nnews at six.mp3;600\n");
}

QStringList CheckRehearsedTest::Run(const QString& command, const QByteArray& schedule,
                                    const QStringList& options) const
{
    m_call.Write(SCHEDULE, schedule);
    return m_call.Run(QStringList{command, SCHEDULE, u"--tz"_s, u"Europe/Rome"_s} + options)
        .output.split(u'\n', Qt::SkipEmptyParts);
}

void CheckRehearsedTest::OfTwoValuesTheLaterLineComesLast()
{
    const QByteArray schedule = "1111111|08:00:00|*|*|*|||Volume|90\n1111111|08:00:00|*|*|*|||Volume|10\n";
    QVERIFY(HasOne(Check(schedule), u"two-values"_s));
    const QStringList requests = Rehearse(schedule).filter(u"SetMasterVolume"_s);
    QCOMPARE(requests.size(), 2);
    QVERIFY2(requests.last().contains(u"(10"_s), qPrintable(requests.last()));
}

void CheckRehearsedTest::OfTwoValuesOfOtherDaysTheOneStartedLastComesLast()
{
    // The line of every day was started on Sunday, that of Mondays a week ago.
    const QByteArray schedule = "1111111|08:00:00|*|*|*|||Volume|10\n1000000|08:00:00|*|*|*|||Volume|90\n";
    const QStringList findings = Check(schedule);
    QVERIFY2(findings.first().contains(u"started more recently comes last and stays in force"_s),
             qPrintable(findings.first()));
    const QStringList requests = Rehearse(schedule).filter(u"SetMasterVolume"_s);
    QCOMPARE(requests.size(), 2);
    QVERIFY2(requests.last().contains(u"(10"_s), qPrintable(requests.last()));
}

void CheckRehearsedTest::AStreamIsStoppedAsItBeginsInEitherOrder_data()
{
    QTest::addColumn<QByteArray>("schedule");
    const QByteArray play = "1111111|08:00:00|*|*|*|||PlayStream|8554/live\n";
    const QByteArray stop = "1111111|08:00:00|*|*|*|||StopStream\n";
    QTest::newRow("the start stands first") << play + stop;
    QTest::newRow("the stop stands first") << stop + play;
}

void CheckRehearsedTest::AStreamIsStoppedAsItBeginsInEitherOrder()
{
    QFETCH(const QByteArray, schedule);
    const QStringList findings = Check(schedule);
    QVERIFY(HasOne(findings, u"two-values"_s));
    QVERIFY2(findings.first().contains(u"in either order of the lines the stream may be stopped as it begins"_s),
             qPrintable(findings.first()));
    const QStringList lines = Rehearse(schedule);
    QCOMPARE(lines.filter(u"ends 08:00:00, stopped by"_s).size(), 1);
    QCOMPARE(lines.filter(u"soundmanager"_s).size(), 2);
    QVERIFY(lines.filter(u"soundmanager"_s).last().contains(u"StopPlay"_s));
}

void CheckRehearsedTest::AStopAtAStartIsFoundWhereTheRehearsalHasIt_data()
{
    QTest::addColumn<int>("behind");
    QTest::addColumn<QByteArray>("play");
    QTest::addColumn<QByteArray>("stop");
    for (int behind_s = -12; behind_s <= 12; ++behind_s)
    {
        QTest::addRow("a playlist, %d s", behind_s)
            << behind_s << QByteArray("PlayPlaylist|morning,50,music") << QByteArray("StopPlaylist|music");
        // The rehearsal has each message last 10 s, so that nothing is left to be stopped then.
        if (behind_s != 10)
            QTest::addRow("a message, %d s", behind_s)
                << behind_s << QByteArray("PlayMessage|gong.mp3") << QByteArray("StopMessage");
    }
}

void CheckRehearsedTest::AStopAtAStartIsFoundWhereTheRehearsalHasIt()
{
    QFETCH(const int, behind);
    QFETCH(const QByteArray, play);
    QFETCH(const QByteArray, stop);
    constexpr int SHORTEST_S = 10;
    const QByteArray second = QTime(8, 0).addSecs(behind).toString(u"HH:mm:ss"_s).toLatin1();
    // An earlier playlist, which the stop is for.
    const QByteArray before =
        play.startsWith("PlayPlaylist") ? "1111111|07:45:00|*|*|*|||" + play + '\n' : QByteArray();
    const QByteArray schedule =
        before + "1111111|08:00:00|*|*|*|||" + play + "\n1111111|" + second + "|*|*|*|||" + stop + '\n';
    const bool isFound = HasOne(Check(schedule), u"stopped-at-start"_s);

    const QString json = Rehearse(schedule, {u"--json"_s}).join(u'\n');
    bool isStopped = false;
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    for (const QJsonValue& event : document.object().value(u"events"_s).toArray())
    {
        const auto moment = [&](const QString& name) {
            return QDateTime::fromString(event[name].toString(), Qt::ISODate);
        };
        if (moment(u"start"_s).time() == QTime(8, 0) && event[u"stoppedByLine"].isDouble())
            isStopped |= moment(u"start"_s).secsTo(moment(u"end"_s)) <= SHORTEST_S;
    }
    QCOMPARE(isFound, isStopped);
    QCOMPARE(isFound, behind > -8 && behind <= SHORTEST_S);
}

void CheckRehearsedTest::BothPlaylistsAreAskedFor()
{
    const QByteArray schedule =
        "1111111|08:00:00|*|*|*|||PlayPlaylist|morning\n1111111|08:05:00|*|*|*|||PlayPlaylist|evening\n";
    QVERIFY(HasOne(Check(schedule), u"two-playlists"_s));
    const QStringList lines = Rehearse(schedule);
    QCOMPARE(lines.filter(u" PlayPlaylist("_s).size(), 2);
    QCOMPARE(lines.filter(u"StopPlay("_s).size(), 0);
    QCOMPARE(lines.filter(u"ends 08:11:02"_s).size(), 1);
}

OZNA_CASE(CheckRehearsed, CheckRehearsedTest)
#include "tst_CheckRehearsed.moc"
