#pragma once

#include "DataFolder.h"
#include "LogRecorder.h"
#include "PeerRecorder.h"
#include "VirtualClock.h"

#include <QObject>
#include <QTest>

#include <optional>

// What every test of the engine stands on. Each test function, and each row, begins with an empty log, a virtual
// clock, peers that accept everything, new shared proxies and an empty data folder; at its end it fails when the log
// holds an error or a warning that it did not expect. The bus cannot be reached.
//
// A test program that needs more before or after each test overrides Begin and End.
class UnitTest : public QObject
{
    Q_OBJECT
public:
    UnitTest();
    ~UnitTest() override;

protected:
    virtual void Begin() {}

    // Called while the clock, the peers and the data folder are still there.
    virtual void End() {}

    VirtualClock& Time() { return *m_clock; }
    PeerRecorder& Bus() { return *m_peers; }
    DataFolder& Data() { return *m_data; }

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

private:
    std::optional<VirtualClock> m_clock;
    std::optional<PeerRecorder> m_peers;
    std::optional<DataFolder> m_data;
};
