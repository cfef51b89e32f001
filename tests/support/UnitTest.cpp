#include "UnitTest.h"

#include "Log.h"
#include "peers/Peers.h"

#include <QDBusConnection>

UnitTest::UnitTest() = default;

UnitTest::~UnitTest() = default;

void UnitTest::initTestCase()
{
    QVERIFY2(!QDBusConnection::sessionBus().isConnected(), "a unit test must not reach a session bus");
    LogRecorder::Install();
}

void UnitTest::init()
{
    Peers::DeleteProxies();
    Peers::CreateProxies();
    m_clock.emplace();
    m_peers.emplace();
    m_data.emplace();
    Begin();
    LogRecorder::Clear();
    m_peers->Clear();
}

void UnitTest::cleanup()
{
    End();
    m_data.reset();
    m_peers.reset();
    m_clock.reset();
    // A test that has failed may have stopped before it read the log.
    if (QTest::currentTestFailed())
        LogRecorder::Clear();
    EXPECT_LOG(LEVEL_WARNING, {});
}
