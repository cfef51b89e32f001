#include "SchedulerLines.h"
#include "SchedulerTest.h"
#include "Suite.h"

#include <UpdateManagerProxy.h>

#include <QCoreApplication>

using namespace Qt::StringLiterals;

// Announcements of a new schedule file that wait already when it is loaded cost no load of their own.
class WaitingUpdatesTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void WhatWaitsIsTakenTogether_data();
    void WhatWaitsIsTakenTogether();
    void ACoveredAnnouncementIsLogged();

private:
    void Queue(QChar step);
};

void WaitingUpdatesTest::WhatWaitsIsTakenTogether_data()
{
    QTest::addColumn<QString>("steps");  // all that waits, in order; after a bar, what comes when that has been handled
    QTest::addColumn<QString>("loaded"); // by which file names
    QTest::addColumn<bool>("isEnabled");
    const auto row = [](const char* name, const char* steps, const char* loaded, bool isEnabled = true) {
        QTest::newRow(name) << QString::fromLatin1(steps) << QString::fromLatin1(loaded) << isEnabled;
    };
    row("one", "u", "schedule");
    row("three", "uuu", "schedule");
    row("another that comes later", "uu|u", "schedule schedule");
    row("two that come later", "uu|uu", "schedule schedule");
    row("behind a disabling", "ud", "schedule", false);
    row("around a disabling", "uuduu", "schedule schedule");
    row("around two disablings", "ududu", "schedule schedule schedule");
    row("while disabled", "d|uuu", "schedule");
    row("around a reload", "uru", "schedule schedule schedule");
    row("around another file", "ufu", "schedule other other");
    row("around another file while disabled", "dufuu", "schedule other other");
    row("around an enabling that changes nothing", "ueu", "schedule");
    row("around an update of something else", "uou", "schedule");
    row("behind a reload", "ruu", "schedule schedule");
    row("one that comes between two loads", "updu", "schedule schedule");
}

void WaitingUpdatesTest::Queue(QChar step)
{
    const auto later = [this](auto call) { QVERIFY(QMetaObject::invokeMethod(&Engine(), call, Qt::QueuedConnection)); };
    switch (step.toLatin1())
    {
    case 'u': later([] { Q_EMIT Scheduler::m_updateManProxy->FilesUpdated(0, 2); }); break;
    case 'p': later([this] { Queue(u'u'); }); break;
    case 'o': later([] { Q_EMIT Scheduler::m_updateManProxy->FilesUpdated(0, 1); }); break;
    case 'd': later([this] { Engine().SetEnabled(false); }); break;
    case 'e': later([this] { Engine().SetEnabled(true); }); break;
    case 'r': later([this] { Engine().Reload(); }); break;
    case 'f': later([this] { Engine().SetScheduleFile(u"other.csv"_s); }); break;
    default: QCoreApplication::sendPostedEvents();
    }
}

void WaitingUpdatesTest::WhatWaitsIsTakenTogether()
{
    QFETCH(QString, steps);
    QFETCH(QString, loaded);
    QFETCH(bool, isEnabled);
    StartWith({});
    for (const QChar step : steps)
        Queue(step);
    // Each handles what waits when it is called.
    QCoreApplication::sendPostedEvents();
    QCoreApplication::sendPostedEvents();

    QStringList found;
    for (const QString& message : LogRecorder::Messages())
    {
        if (message.startsWith("Loading schedule from"_L1))
            found.append(message.section(u'/', -1).section(u'.', 0, 0));
    }
    QCOMPARE(found.join(u' '), loaded);
    QCOMPARE(LogRecorder::Messages().count(u"Schedule file updated"_s), steps.count(u'u') + steps.count(u'p'));
    bool enabled = false;
    QString name;
    QCOMPARE(Engine().IsEnabled(enabled, name), 0);
    QCOMPARE(enabled, isEnabled);
    LogRecorder::Clear();
}

void WaitingUpdatesTest::ACoveredAnnouncementIsLogged()
{
    StartWith({"1111111|08:30:00|*|*|*|||StopMessage"});
    Queue(u'u');
    Queue(u'u');
    QCoreApplication::sendPostedEvents();
    const LogLines updated{"4 [Scheduler.cpp] Schedule file updated"};
    EXPECT_LOG(4, (updated + SchedulerLines::RESTARTING + SchedulerLines::STOPPED +
                   SchedulerLines::Started(Data(), u"schedule.csv"_s, SchedulerLines::ONE_STOP) + updated));
}

OZNA_CASE(WaitingUpdates, WaitingUpdatesTest)
#include "tst_WaitingUpdates.moc"
