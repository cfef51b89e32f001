#pragma once

#include "PeerNames.h"
#include "PrivateBus.h"
#include "Wait.h"

#include <QDBusMessage>
#include <QProcess>
#include <QTest>

#include <memory>

// What a test of the simulated device stands on: each test function, and each row, gets a private bus.
class SimulatorTest : public QObject
{
    Q_OBJECT
protected:
    // Of a peer: "sound".
    [[nodiscard]] static QString Service(const QString& peer);
    [[nodiscard]] static QString Interface(const QString& peer);
    [[nodiscard]] static QString ObjectPath(const QString& peer);

    static const QString CONTROL_SERVICE;
    static const QString SOUND_INTERFACE;
    static const QString PLAY_AUX;
    static const QString PLAY_FILE;

    PrivateBus& Bus() { return *m_bus; }
    QProcess& Process() { return *m_process; }

    // Starts the program on the bus, in place of one started before, and waits until its peers are there.
    void Start(const QStringList& arguments = {QStringLiteral("--quiet")});

    // Waits for the end. -1 when it does not end or crashes.
    [[nodiscard]] static int ExitCode(QProcess& process);

    // A process on the bus, started, that is not waited for.
    [[nodiscard]] std::unique_ptr<QProcess> Launch(const QStringList& arguments) const;

    QDBusMessage Call(const char* peer, const QString& member, const QVariantList& arguments = {},
                      int timeout_ms = WAIT_MS);

    // Calls a method of the control interface.
    QDBusMessage Control(const char* method, const QVariantList& arguments = {});

    // The same; the test fails when it is refused.
    void Order(const char* method, const QVariantList& arguments = {});

    // Has the sound manager's PlayAux answered in that way.
    void SetAnswer(const char* kind, const QVariantList& values = {}, int delay_ms = 0, int times = 1);

    // The calls that the device has noted.
    [[nodiscard]] QList<QVariantMap> Calls();

private Q_SLOTS:
    void init();
    void cleanup();

private:
    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<QProcess> m_process;
};
