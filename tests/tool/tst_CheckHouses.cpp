#include "CommandCall.h"
#include "Suite.h"

#include <QDir>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

const QString FOLDER = QStringLiteral(OZNA_SOURCES "/tests/data/houses");
const QString PLAYLISTS = QStringLiteral("playlists");
constexpr int FEWEST = 20;

QStringList Houses()
{
    return QDir(FOLDER).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

// The schedules of houses in which nothing is wrong: a rule that finds something there warns for nothing.
class CheckHousesTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void ThereAreHousesOfManySorts();
    void NothingIsFoundInAGoodSchedule_data();
    void NothingIsFoundInAGoodSchedule();
    void EachPlaylistIsPlayed_data();
    void EachPlaylistIsPlayed();
};

void CheckHousesTest::ThereAreHousesOfManySorts()
{
    QVERIFY(Houses().size() >= FEWEST);
}

void CheckHousesTest::NothingIsFoundInAGoodSchedule_data()
{
    QTest::addColumn<QString>("house");
    for (const QString& house : Houses())
        QTest::newRow(qPrintable(house)) << house;
}

void CheckHousesTest::NothingIsFoundInAGoodSchedule()
{
    QFETCH(const QString, house);
    const CommandCall call(FOLDER + u'/' + house);
    const QStringList playlists =
        QDir(call.Folder()).exists(PLAYLISTS) ? QStringList{u"--playlists"_s, PLAYLISTS} : QStringList();
    const CommandCall::Result result = call.Run(QStringList{u"check"_s, u"schedule.csv"_s, u"--strict"_s, u"--today"_s,
                                                            u"2024-05-15"_s, u"--tz"_s, u"Europe/Rome"_s} +
                                                playlists);
    QVERIFY2(result.output.endsWith(u" lines, 0 errors, 0 warnings\n"_s), qPrintable(result.output));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.status, 0);
}

void CheckHousesTest::EachPlaylistIsPlayed_data()
{
    NothingIsFoundInAGoodSchedule_data();
}

void CheckHousesTest::EachPlaylistIsPlayed()
{
    QFETCH(const QString, house);
    QFile file(FOLDER + u'/' + house + u"/schedule.csv"_s);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    const QString schedule = QString::fromUtf8(file.readAll());
    for (const QString& playlist : QDir(FOLDER + u'/' + house + u'/' + PLAYLISTS).entryList(QDir::Files))
        QVERIFY2(schedule.contains(u"|PlayPlaylist|"_s + playlist), qPrintable(playlist));
}

OZNA_CASE(CheckHouses, CheckHousesTest)
#include "tst_CheckHouses.moc"
