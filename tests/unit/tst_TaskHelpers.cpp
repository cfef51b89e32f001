#include "RequestTable.h"
#include "Scheduler.h"
#include "Suite.h"
#include "UnitTest.h"
#include "peers/ProxyTimeout.h"
#include "tasks/EnableAux.h"
#include "tasks/Lan.h"
#include "tasks/Photo.h"
#include "tasks/PlayMessage.h"
#include "tasks/PlayPlaylist.h"
#include "tasks/PlayRadioFm.h"
#include "tasks/PlayStream.h"
#include "tasks/PunctualTask.h"
#include "tasks/RequestPddAction.h"
#include "tasks/StopMessage.h"
#include "tasks/StopPlaylist.h"
#include "tasks/StopRadioFm.h"
#include "tasks/StopStream.h"
#include "text/Parameter.h"

#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>

#include <QMetaMethod>

#include <limits>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace
{

constexpr int PHOTO_TIMEOUT_MS = 5000;
constexpr int FALLBACK = 42;

class BareTask final : public PunctualTask
{
public:
    BareTask()
        : PunctualTask(TASK_VOLUME, u"identifier"_s)
    {
    }
    bool Run() override { return true; }
};

int SoundTimeout()
{
    return Scheduler::m_soundManProxy->timeout();
}

QStringList Members(const QMetaObject& metaObject)
{
    QStringList members;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i)
    {
        const QMetaMethod method = metaObject.method(i);
        members.append((method.methodType() == QMetaMethod::Signal ? u"signal "_s : u"slot "_s) +
                       QString::fromLatin1(method.methodSignature()));
    }
    return members;
}

} // namespace

Q_DECLARE_METATYPE(const QMetaObject*)

// What the kinds of task share.
class TaskHelpersTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AParameterIsADecimalNumber_data();
    void AParameterIsADecimalNumber();
    void ATimeoutLastsAsLongAsItsObject();
    void ATimeoutEndsWithAnException();
    void ATimeoutIsThatOfOneProxy();
    void APunctualTaskIsNeverLate();
    void AKindHasItsSignalsAndSlots_data();
    void AKindHasItsSignalsAndSlots();
};

void TaskHelpersTest::AParameterIsADecimalNumber_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isNumber");
    QTest::addColumn<int>("number");
    const auto number = [](const char* text, int value) {
        QTest::addRow("\"%s\"", text) << QString::fromUtf8(text) << true << value;
    };
    number("0", 0);
    number("1", 1);
    number("01", 1);
    number("+1", 1);
    number("2", 2);
    number("-1", -1);
    number("-0", 0);
    number("42", 42);
    number("2147483647", std::numeric_limits<int>::max());
    number("-2147483648", std::numeric_limits<int>::min());
    for (const char* const text : {"", "x", "1x", "x1", "1.0", "1,0", "1e0", "0x1", "0b1", "1 1", "--1", "+", "-",
                                   "2147483648", "-2147483649", "4294967297", "\xef\xbc\x91"})
        QTest::addRow("\"%s\" is none", text) << QString::fromUtf8(text) << false << 0;
    QTest::newRow("a null text is none") << QString() << false << 0;
}

void TaskHelpersTest::AParameterIsADecimalNumber()
{
    QFETCH(QString, text);
    QFETCH(bool, isNumber);
    QFETCH(int, number);
    int warnings = 0;
    const auto warn = [&warnings] { ++warnings; };
    QCOMPARE(Parameter::ToInt(text, FALLBACK, warn), isNumber ? number : FALLBACK);
    QCOMPARE(warnings, isNumber ? 0 : 1);
    // Only the number 1 switches on.
    QCOMPARE(Parameter::ToSwitch(text, warn), isNumber && number == 1);
    QCOMPARE(warnings, isNumber ? 0 : 2);
}

void TaskHelpersTest::ATimeoutLastsAsLongAsItsObject()
{
    QCOMPARE(SoundTimeout(), SOUND_TIMEOUT_MS);
    {
        const ProxyTimeout outer(Scheduler::m_soundManProxy, 5000);
        QCOMPARE(SoundTimeout(), 5000);
        {
            const ProxyTimeout inner(Scheduler::m_soundManProxy, 20000);
            QCOMPARE(SoundTimeout(), 20000);
        }
        QCOMPARE(SoundTimeout(), 5000);
    }
    QCOMPARE(SoundTimeout(), SOUND_TIMEOUT_MS);
}

void TaskHelpersTest::ATimeoutEndsWithAnException()
{
    const auto fail = [] {
        const ProxyTimeout patience(Scheduler::m_soundManProxy, 20000);
        throw std::runtime_error("call");
    };
    QVERIFY_THROWS_EXCEPTION(std::runtime_error, fail());
    QCOMPARE(SoundTimeout(), SOUND_TIMEOUT_MS);
}

void TaskHelpersTest::ATimeoutIsThatOfOneProxy()
{
    const ProxyTimeout patience(Scheduler::m_soundManProxy, 20000);
    QCOMPARE(Scheduler::m_photoManProxy->timeout(), PHOTO_TIMEOUT_MS);
}

void TaskHelpersTest::APunctualTaskIsNeverLate()
{
    BareTask task;
    QCOMPARE(task.GetDelayable_s(), 0U);
    QCOMPARE(task.m_type, TASK_VOLUME);
    QCOMPARE(task.m_identifier, u"identifier"_s);
    task.PrepareDelayed(60);
    task.SetCompleted(true);
    QCOMPARE(task.GetDelayable_s(), 0U);
    QCOMPARE(task.IsRunning(), false);
    EXPECT_LOG(9, {});
}

void TaskHelpersTest::AKindHasItsSignalsAndSlots_data()
{
    QTest::addColumn<const QMetaObject*>("metaObject");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QStringList>("members");
    const auto row = [](const QMetaObject& metaObject, const char* name, const QStringList& members = {}) {
        QTest::newRow(name) << &metaObject << QByteArray(name) << members;
    };
    const QString completed = u"signal TaskCompleted()"_s;
    row(PlayMessage::staticMetaObject, "PlayMessage", {completed, u"slot OnPlayFileCompleted(QString)"_s});
    row(PlayPlaylist::staticMetaObject, "PlayPlaylist", {completed, u"slot OnPlayPlaylistCompleted(QString)"_s});
    row(PlayStream::staticMetaObject, "PlayStream", {completed, u"slot OnPlayStreamCompleted(bool)"_s});
    row(Photo::staticMetaObject, "Photo", {u"slot OnPhotoTaken(int,QString)"_s});
    row(RequestPddAction::staticMetaObject, "RequestPddAction", {u"signal PddAction(PDD_ACTION,bool)"_s});
    row(EnableAux::staticMetaObject, "EnableAux");
    row(Lan::staticMetaObject, "Lan");
    row(PlayRadioFm::staticMetaObject, "PlayRadioFm");
    row(StopMessage::staticMetaObject, "StopMessage");
    row(StopPlaylist::staticMetaObject, "StopPlaylist");
    row(StopRadioFm::staticMetaObject, "StopRadioFm");
    row(StopStream::staticMetaObject, "StopStream");
    row(Task::staticMetaObject, "Task");
}

void TaskHelpersTest::AKindHasItsSignalsAndSlots()
{
    QFETCH(const QMetaObject*, metaObject);
    QFETCH(QByteArray, name);
    QFETCH(QStringList, members);
    QCOMPARE(QByteArray(metaObject->className()), name);
    QCOMPARE(Members(*metaObject), members);
    const bool isBase = metaObject == &Task::staticMetaObject;
    QCOMPARE(metaObject->superClass(), isBase ? &QObject::staticMetaObject : &Task::staticMetaObject);
}

OZNA_CASE(TaskHelpers, TaskHelpersTest)
#include "tst_TaskHelpers.moc"
