#include "Rows.h"
#include "SchedulerTest.h"
#include "Suite.h"
#include "peers/Peers.h"
#include "tasks/PlayMessage.h"
#include "text/TextFile.h"

#include <new>
#include <stdexcept>

using namespace Qt::StringLiterals;

// The library's functions as the daemon's code calls them, replaced by ones that can be told to fail.

namespace
{

int m_goodLines = -1;       // after so many lines reading throws; negative: never
int m_goodConnections = -1; // after so many connections connecting fails; negative: never
bool m_hasReadError = false;

bool Fails(int& good)
{
    if (good < 0)
        return false;
    return good-- == 0;
}

} // namespace

using Connection = QMetaObject::Connection;

bool RealReadLine(TextFile* file, QString& line) __asm__("__real__ZN8TextFile8ReadLineER7QString");
bool ReadLine(TextFile* file, QString& line) __asm__("__wrap__ZN8TextFile8ReadLineER7QString");

Connection
RealConnect(const QObject* sender, void** signal, const QObject* receiver, void** slot,
            QtPrivate::QSlotObjectBase* object, Qt::ConnectionType type, const int* types,
            const QMetaObject* metaObject) __asm__("__real__ZN7QObject11connectImplEPKS_PPvS1_S3_"
                                                   "PN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPKiPK11"
                                                   "QMetaObject");
Connection Connect(const QObject* sender, void** signal, const QObject* receiver, void** slot,
                   QtPrivate::QSlotObjectBase* object, Qt::ConnectionType type, const int* types,
                   const QMetaObject* metaObject) __asm__("__wrap__ZN7QObject11connectImplEPKS_PPvS1_S3_"
                                                          "PN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPKiPK11"
                                                          "QMetaObject");

bool ReadLine(TextFile* file, QString& line)
{
    if (Fails(m_goodLines))
        throw std::bad_alloc();
    return RealReadLine(file, line);
}

Connection Connect(const QObject* sender, void** signal, const QObject* receiver, void** slot,
                   QtPrivate::QSlotObjectBase* object, Qt::ConnectionType type, const int* types,
                   const QMetaObject* metaObject)
{
    if (!Fails(m_goodConnections))
        return RealConnect(sender, signal, receiver, slot, object, type, types, metaObject);
    object->destroyIfLastRef();
    return {};
}

QString RealReadError(const TextFile* file) __asm__("__real__ZNK8TextFile9ReadErrorEv");
QString ReadError(const TextFile* file) __asm__("__wrap__ZNK8TextFile9ReadErrorEv");

QString ReadError(const TextFile* file)
{
    return m_hasReadError ? u"Input/output error"_s : RealReadError(file);
}

class BrokenLibraryTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void AnExceptionWhileLoadingEndsTheLoad_data();
    void AnExceptionWhileLoadingEndsTheLoad();
    void AReadErrorIsLogged();
    void AnActionThatCannotBeConnectedIsDropped_data();
    void AnActionThatCannotBeConnectedIsDropped();
    void ASchedulerThatCannotBeConnectedIsNone_data();
    void ASchedulerThatCannotBeConnectedIsNone();
    void AMessageWhoseEndCannotBeHeardIsTold();

private:
    void Begin() override;
};

void BrokenLibraryTest::Begin()
{
    m_goodLines = -1;
    m_goodConnections = -1;
    m_hasReadError = false;
    Data().WriteSchedule(QByteArray("1111111|08:30:00|*|*|*|||StopMessage\n").repeated(3));
    Create();
}

void BrokenLibraryTest::AnExceptionWhileLoadingEndsTheLoad_data()
{
    Rows<int>::Add({
        {"at the first line", 0},
        {"at the second line", 1},
        {"at the last line", 2},
    });
}

void BrokenLibraryTest::AnExceptionWhileLoadingEndsTheLoad()
{
    const int goodLines = Rows<int>::Current();
    m_goodLines = goodLines;
    Engine().Start();
    LogLines lines{"4 [Scheduler.cpp] Starting schedule...", "4 [Scheduler.cpp] Loading schedule from " +
                                                                 Data().SchedulePath(u"schedule.csv"_s).toUtf8() +
                                                                 "..."};
    for (int i = 0; i < goodLines; ++i)
        lines.append("4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage");
    lines += {"1 [Scheduler.cpp] Unexpected error while loading schedule", "4 [Scheduler.cpp] Finding ready actions...",
              "4 [Scheduler.cpp] Schedule started"};
    EXPECT_LOG(4, (lines));
    // What was read before stays.
    QCOMPARE(FarList().size(), goodLines);
}

void BrokenLibraryTest::AReadErrorIsLogged()
{
    m_hasReadError = true;
    Engine().Start();
    EXPECT_LOG(2, {"2 [Scheduler.cpp] Schedule file read error: Input/output error"});
    QCOMPARE(FarList().size(), 3);
}

void BrokenLibraryTest::AnActionThatCannotBeConnectedIsDropped_data()
{
    Rows<int>::Add({
        {"the first", 0},
        {"the second", 1},
        {"the last", 2},
    });
}

void BrokenLibraryTest::AnActionThatCannotBeConnectedIsDropped()
{
    const int failing = Rows<int>::Current();
    m_goodConnections = failing;
    Engine().Start();
    LogLines lines{"4 [Scheduler.cpp] Starting schedule...", "4 [Scheduler.cpp] Loading schedule from " +
                                                                 Data().SchedulePath(u"schedule.csv"_s).toUtf8() +
                                                                 "..."};
    for (int i = 0; i < 3; ++i)
    {
        lines.append("4 [tasks/StopMessage.cpp] TASK CREATED | StopMessage");
        if (i == failing)
            lines.append("2 [Scheduler.cpp] Action creation failed");
    }
    lines += {"4 [Scheduler.cpp] Schedule loaded (2 tasks)", "4 [Scheduler.cpp] Finding ready actions...",
              "4 [Scheduler.cpp] Schedule started"};
    EXPECT_LOG(4, (lines));
    QCOMPARE(FarList().size(), 2);
}

void BrokenLibraryTest::ASchedulerThatCannotBeConnectedIsNone_data()
{
    Rows<int>::Add({
        {"the update manager's signal", 0},
        {"the end of a message", 1},
        {"the end of a playlist", 2},
        {"the end of a stream", 3},
        {"the far timer", 4},
        {"the early timer", 5},
    });
}

void BrokenLibraryTest::ASchedulerThatCannotBeConnectedIsNone()
{
    const int failing = Rows<int>::Current();
    End();
    Peers::DeleteProxies();
    LogRecorder::Clear();
    m_goodConnections = failing;
    QVERIFY_THROWS_EXCEPTION(std::exception, Scheduler(u"schedule.csv"_s));
    EXPECT_LOG(9, {});
}

void BrokenLibraryTest::AMessageWhoseEndCannotBeHeardIsTold()
{
    PlayMessage message(u"08:30:00"_s, u"gong.mp3"_s, u"-1"_s);
    m_goodConnections = 0;
    LogRecorder::Clear();
    QVERIFY(message.Run());
    EXPECT_LOG(2, {"2 [tasks/PlayMessage.cpp] Can't wait for the end of PlayMessage"});
}

OZNA_CASE(BrokenLibrary, BrokenLibraryTest)
#include "tst_BrokenLibrary.moc"
