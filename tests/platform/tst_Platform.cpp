#include "BusTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// The platform is chosen when the daemon is linked, and nothing else changes with it.
class Platform : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void AnotherPlatformIsAnotherLibraryOnly();
    void AnotherPlatformTakesTheLog();
    void NoSourceAsksForThePlatform();
};

namespace
{

QStringList NeededLibraries(const char* program)
{
    QProcess readelf;
    readelf.start(u"readelf"_s,
                  {u"--dynamic"_s, u"--wide"_s, QStringLiteral(OZNA_BUILD_DIR "/") + QString::fromLatin1(program)});
    if (!readelf.waitForFinished() || readelf.exitCode() != 0)
        qFatal("readelf: %s", qPrintable(readelf.errorString()));
    QStringList needed;
    for (const QByteArray& line : readelf.readAllStandardOutput().split('\n'))
    {
        if (line.contains("(NEEDED)"))
            needed.append(QString::fromUtf8(line).section(u'[', 1).chopped(1));
    }
    needed.sort();
    return needed;
}

} // namespace

void Platform::AnotherPlatformIsAnotherLibraryOnly()
{
    QStringList expected = NeededLibraries("ozna-scheduler");
    QVERIFY(expected.size() > 2);
    expected.append(u"libozna_dummy_platform.so"_s);
    expected.sort();
    COMPARE_LINES(NeededLibraries("tests/ozna-scheduler-dummy"), expected);
}

void Platform::AnotherPlatformTakesTheLog()
{
    UseDaemon(u"tests/ozna-scheduler-dummy"_s);
    Daemon().Environment().insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nonexistent"_s);
    Daemon().Start();
    QCOMPARE(Daemon().WaitForExit(), EXIT_FAILED);
    QStringList lines = Daemon().Take();
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines[0], u"dummy log client of /com/kestrelix/ozna/scheduler/logobj"_s);
    QVERIFY(lines[1].startsWith(u"dummy 4 /com/kestrelix/ozna/scheduler/schedulerobj [main.cpp:"_s));
    QVERIFY(lines[2].endsWith(u"] DBUS: Can't connect session bus"_s));
}

void Platform::NoSourceAsksForThePlatform()
{
    QProcess grep;
    grep.start(u"grep"_s, {u"-rnE"_s, u"^ *# *(ifdef|ifndef|if|elif)"_s, QStringLiteral(OZNA_SOURCE_DIR "/src"),
                           QStringLiteral(OZNA_SOURCE_DIR "/platform")});
    QVERIFY(grep.waitForFinished());
    QCOMPARE(QString::fromUtf8(grep.readAllStandardOutput()), QString());
    QCOMPARE(grep.exitCode(), 1);
}

OZNA_CASE(Platform, Platform)
#include "tst_Platform.moc"
