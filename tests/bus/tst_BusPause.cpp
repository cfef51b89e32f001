#include "PrivateBus.h"
#include "Suite.h"
#include "process/BusPause.h"

#include <QDBusConnectionInterface>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int BUSY_MS = 50;
constexpr int SOON_MS = 10'000;

} // namespace

// The bus library, held still while a call gets its place in the order of what arrives.
class BusPauseTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void ALibraryThatIsBusyIsWaitedFor();
    void WhatArrivesIsHandledAfterwards();
    void WithoutAConnectionThereIsNothingToHold();

private:
    // Something for the library's thread to do.
    void Post(const std::function<void()>& work)
    {
        QVERIFY(QMetaObject::invokeMethod(m_bus.Connection().interface(), work, Qt::QueuedConnection));
    }

    PrivateBus m_bus;
};

void BusPauseTest::ALibraryThatIsBusyIsWaitedFor()
{
    const auto isDone = std::make_shared<std::atomic<bool>>(false);
    Post([isDone] {
        static_cast<void>(QSemaphore().tryAcquire(1, BUSY_MS));
        *isDone = true;
    });
    const BusPause pause(m_bus.Connection());
    QVERIFY(*isDone);
}

void BusPauseTest::WhatArrivesIsHandledAfterwards()
{
    const auto handled = std::make_shared<QSemaphore>();
    {
        const BusPause pause(m_bus.Connection());
        Post([handled] { handled->release(); });
        QVERIFY(!handled->tryAcquire(1, BUSY_MS));
    }
    QVERIFY(handled->tryAcquire(1, SOON_MS));
}

void BusPauseTest::WithoutAConnectionThereIsNothingToHold()
{
    const BusPause pause(QDBusConnection(u"none"_s));
    QVERIFY(!QDBusConnection(u"none"_s).isConnected());
}

OZNA_CASE(BusPause, BusPauseTest)
#include "tst_BusPause.moc"
