#include "BusTest.h"
#include "Suite.h"

#include <QDir>
#include <QFileInfo>

#include <cstdio>
#include <ctime>
#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace
{

const QString FOLDER = u"zone"_s;
const QByteArray LIBRARY_PATH = "/etc/localtime";
const QByteArray OUR_PATH = "zone-of-device"; // the library looks for it in TZDIR
const QString FIRST = u"sound.SetMasterVolume d 1"_s;
const QString SECOND = u"sound.SetMasterVolume d 2"_s;

} // namespace

// The device's time zone is changed while the daemon runs: /etc/localtime, a link or a file, is replaced. That path is
// compiled into the C library, so the daemon under test gets a copy of the library in which it is another one.
class TimeZoneChange : public BusTest
{
    Q_OBJECT
private Q_SLOTS:
    void AReplacedZoneIsFollowed_data();
    void AReplacedZoneIsFollowed();
    void AZoneOfTheEnvironmentStays();

private:
    void UseCopiedLibrary();
    [[nodiscard]] QString ZonePath() const { return DataPath(FOLDER + u'/' + QString::fromLatin1(OUR_PATH)); }
    void PutZone(const QString& zone, bool asLink);

    // Puts the clock on to a moment as soon as the daemon, which saw it eight seconds ahead, watches what is due then.
    [[nodiscard]] bool Reach(const QDateTime& due);
};

void TimeZoneChange::UseCopiedLibrary()
{
    QVERIFY(QDir().mkpath(DataPath(FOLDER)));
    Dl_info library{};
    QVERIFY(::dladdr(reinterpret_cast<const void*>(&::tzset), &library) != 0);
    QFile original(QFileInfo(QString::fromLocal8Bit(library.dli_fname)).canonicalFilePath());
    QVERIFY(original.open(QIODevice::ReadOnly));
    QByteArray content = original.readAll();
    QCOMPARE(OUR_PATH.size(), LIBRARY_PATH.size());
    QVERIFY(content.contains(LIBRARY_PATH + '\0'));
    content.replace(LIBRARY_PATH, OUR_PATH);
    WriteFile(DataPath(FOLDER + u"/libc.so.6"_s), content);
    Daemon().Environment().insert(u"TZDIR"_s, DataPath(FOLDER));
    Daemon().Environment().insert(u"LD_LIBRARY_PATH"_s, DataPath(FOLDER));
    WriteSchedule("1111111|08:30:00|*|*|*|||Volume|1\n1111111|09:30:00|*|*|*|||Volume|2\n");
    Time().Set(MONDAY, {6, 0, 0});
}

// Replaces the file at once, as the programs do that set a time zone.
void TimeZoneChange::PutZone(const QString& zone, bool asLink)
{
    const QString path = ZonePath();
    const QString before = path + u".new"_s;
    const QString source = QStringLiteral(OZNA_ZONEINFO_DIR "/") + zone;
    QVERIFY(asLink ? QFile::link(source, before) : QFile::copy(source, before));
    QCOMPARE(std::rename(QFile::encodeName(before).constData(), QFile::encodeName(path).constData()), 0);
}

bool TimeZoneChange::Reach(const QDateTime& due)
{
    Time().Set(due.addSecs(-8));
    static_cast<void>(Daemon().Take());
    if (!Daemon().WaitForLog(u"4 [Scheduler.cpp] EARLY action found: 5 (Volume)"_s))
        return false;
    Time().Set(due);
    return true;
}

void TimeZoneChange::AReplacedZoneIsFollowed_data()
{
    QTest::addColumn<bool>("asLink");
    QTest::newRow("a link") << true;
    QTest::newRow("a file") << false;
}

void TimeZoneChange::AReplacedZoneIsFollowed()
{
    QFETCH(bool, asLink);
    UseCopiedLibrary();
    PutZone(u"Europe/London"_s, asLink);
    Daemon().Environment().remove(u"TZ"_s);
    QVERIFY(StartDaemon());
    QVERIFY(Reach(At(MONDAY, {8, 30, 0})));
    QVERIFY(Device().WaitForCalls(1));
    COMPARE_LINES(Device().Calls(), {FIRST});

    PutZone(u"Europe/Rome"_s, asLink);
    QVERIFY(Reach(At(MONDAY, {8, 30, 0})));
    QVERIFY(Device().WaitForCalls(2));
    COMPARE_LINES(Device().Calls(), {FIRST, SECOND});
    // The same moment of the day there, as a time of a third zone.
    PutZone(u"Asia/Kathmandu"_s, asLink);
    QVERIFY(Reach(At(MONDAY, {3, 45, 0})));
    QVERIFY(Device().WaitForCalls(3));
    COMPARE_LINES(Device().Calls(), {FIRST, SECOND, SECOND});
}

void TimeZoneChange::AZoneOfTheEnvironmentStays()
{
    UseCopiedLibrary();
    PutZone(u"Europe/Rome"_s, true);
    Daemon().Environment().insert(u"TZ"_s, u":"_s + ZonePath());
    QVERIFY(StartDaemon());
    QVERIFY(Reach(At(MONDAY, {7, 30, 0})));
    QVERIFY(Device().WaitForCalls(1));
    PutZone(u"UTC"_s, true);
    QVERIFY(Reach(At(MONDAY, {7, 30, 0})));
    QVERIFY(Device().WaitForCalls(2));
    COMPARE_LINES(Device().Calls(), {FIRST, FIRST});
}

OZNA_CASE(TimeZoneChange, TimeZoneChange)
#include "tst_TimeZoneChange.moc"
