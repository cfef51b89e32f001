#include "DatagramSocket.h"
#include "Rows.h"
#include "Suite.h"
#include "process/Lifesign.h"

#include <QTemporaryDir>
#include <QTest>

#include <optional>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

const QByteArray SIGN = "WATCHDOG=1";

QByteArray Pid(int offset = 0)
{
    return QByteArray::number(::getpid() + offset);
}

} // namespace

// The sign of life that the service manager's watchdog waits for.
class LifesignTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void cleanup();

    void ASignIsOneDatagram_data();
    void ASignIsOneDatagram();
    void NobodyExpectsASign_data();
    void NobodyExpectsASign();
    void AManagerThatIsNotThereIsTold();
    void AManagerThatDoesNotReadIsNotWaitedFor();
    void AManagerThatHasGoneIsNotFatal();

private:
    [[nodiscard]] QString Path() const { return m_folder.filePath(u"notify"_s); }

    const QTemporaryDir m_folder;
    std::optional<DatagramSocket> m_manager;
};

void LifesignTest::init()
{
    m_manager.emplace(Path());
    qputenv("NOTIFY_SOCKET", Path().toLocal8Bit());
    qputenv("WATCHDOG_USEC", "60000000");
    qputenv("WATCHDOG_PID", Pid());
}

void LifesignTest::cleanup()
{
    for (const char* name : {"NOTIFY_SOCKET", "WATCHDOG_USEC", "WATCHDOG_PID"})
        qunsetenv(name);
    QVERIFY(Lifesign::Open());
    QVERIFY(!Lifesign::IsExpected());
}

void LifesignTest::ASignIsOneDatagram_data()
{
    Rows<bool, bool>::Add(
        {{"at a path", false, true}, {"at an abstract name", true, true}, {"no process named", false, false}});
}

void LifesignTest::ASignIsOneDatagram()
{
    const auto& [isAbstract, isProcessNamed] = Rows<bool, bool>::Current();
    if (!isProcessNamed)
        qunsetenv("WATCHDOG_PID");
    if (isAbstract)
    {
        m_manager.emplace(u"@ozna-"_s + QString::fromLatin1(Pid()));
        qputenv("NOTIFY_SOCKET", "@ozna-" + Pid());
    }
    QVERIFY(Lifesign::Open());
    QVERIFY(Lifesign::IsExpected());
    QCOMPARE(m_manager->Read(), QByteArrayList());
    Lifesign::Give();
    QCOMPARE(m_manager->Read(), QByteArrayList{SIGN});
    Lifesign::Give();
    Lifesign::Give();
    QCOMPARE(m_manager->Read(), QByteArrayList({SIGN, SIGN}));
}

void LifesignTest::NobodyExpectsASign_data()
{
    Rows<QByteArray, QByteArray>::Add({{"not a service", "NOTIFY_SOCKET", {}},
                                       {"no watchdog", "WATCHDOG_USEC", {}},
                                       {"another process is meant", "WATCHDOG_PID", Pid(1)},
                                       {"no process is meant", "WATCHDOG_PID", ""}});
}

void LifesignTest::NobodyExpectsASign()
{
    const auto& [variable, value] = Rows<QByteArray, QByteArray>::Current();
    if (value.isNull())
        qunsetenv(variable.constData());
    else
        qputenv(variable.constData(), value);
    QVERIFY(Lifesign::Open());
    QVERIFY(!Lifesign::IsExpected());
    Lifesign::Give();
    QCOMPARE(m_manager->Read(), QByteArrayList());
}

void LifesignTest::AManagerThatIsNotThereIsTold()
{
    for (const QByteArray& path : {Path().toLocal8Bit() + "-other", QByteArray(), QByteArray(1000, 'x')})
    {
        qputenv("NOTIFY_SOCKET", path);
        QVERIFY(!Lifesign::Open());
        QVERIFY(!Lifesign::IsExpected());
        Lifesign::Give();
    }
}

void LifesignTest::AManagerThatDoesNotReadIsNotWaitedFor()
{
    QVERIFY(Lifesign::Open());
    for (int i = 0; i < 5000; ++i)
        Lifesign::Give();
    const qsizetype taken = m_manager->Read().size();
    QVERIFY(taken > 0 && taken < 5000);
    Lifesign::Give();
    QCOMPARE(m_manager->Read(), QByteArrayList{SIGN});
}

void LifesignTest::AManagerThatHasGoneIsNotFatal()
{
    QVERIFY(Lifesign::Open());
    m_manager.reset();
    Lifesign::Give();
    Lifesign::Give();
}

OZNA_CASE(Lifesign, LifesignTest)
#include "tst_Lifesign.moc"
