#include "BusTest.h"
#include "Suite.h"

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
    readelf.start(QStringLiteral("readelf"), {QStringLiteral("--dynamic"), QStringLiteral("--wide"),
                                              QStringLiteral(OZNA_BUILD_DIR "/") + QString::fromLatin1(program)});
    if (!readelf.waitForFinished() || readelf.exitCode() != 0)
        qFatal("readelf: %s", qPrintable(readelf.errorString()));
    QStringList needed;
    for (const QByteArray& line : readelf.readAllStandardOutput().split('\n'))
    {
        if (line.contains("(NEEDED)"))
            needed.append(QString::fromUtf8(line).section(QLatin1Char('['), 1).chopped(1));
    }
    needed.sort();
    return needed;
}

} // namespace

void Platform::AnotherPlatformIsAnotherLibraryOnly()
{
    QStringList expected = NeededLibraries("ozna-scheduler");
    QVERIFY(expected.size() > 2);
    expected.append(QStringLiteral("libozna_dummy_platform.so"));
    expected.sort();
    COMPARE_LINES(NeededLibraries("tests/ozna-scheduler-dummy"), expected);
}

void Platform::AnotherPlatformTakesTheLog()
{
    UseDaemon(QStringLiteral("tests/ozna-scheduler-dummy"));
    Daemon().Environment().insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent"));
    Daemon().Start();
    QCOMPARE(Daemon().WaitForExit(), EXIT_FAILED);
    QStringList lines = Daemon().Take();
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lines[0], QStringLiteral("dummy log client of /com/kestrelix/ozna/scheduler/logobj"));
    QVERIFY(lines[1].startsWith(QStringLiteral("dummy 4 /com/kestrelix/ozna/scheduler/schedulerobj [main.cpp:")));
    QVERIFY(lines[2].endsWith(QStringLiteral("] DBUS: Can't connect session bus")));
}

void Platform::NoSourceAsksForThePlatform()
{
    QProcess grep;
    grep.start(QStringLiteral("grep"),
               {QStringLiteral("-rnE"), QStringLiteral("^ *# *(ifdef|ifndef|if|elif)"),
                QStringLiteral(OZNA_SOURCE_DIR "/src"), QStringLiteral(OZNA_SOURCE_DIR "/platform")});
    QVERIFY(grep.waitForFinished());
    QCOMPARE(QString::fromUtf8(grep.readAllStandardOutput()), QString());
    QCOMPARE(grep.exitCode(), 1);
}

OZNA_CASE(Platform, Platform)
#include "tst_Platform.moc"
