#include "SchedulerAdaptor.h"
#include "SchedulerTest.h"
#include "Suite.h"

#include <QMetaClassInfo>
#include <QMetaMethod>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace
{

QString ClassInfo(const char* name)
{
    const QMetaObject& metaObject = SchedulerAdaptor::staticMetaObject;
    return QString::fromUtf8(metaObject.classInfo(metaObject.indexOfClassInfo(name)).value());
}

} // namespace

class SchedulerAdaptorTest final : public SchedulerTest
{
    Q_OBJECT
private Q_SLOTS:
    void ItsMembersComeInOrder();
    void ItHasTwoAttributes();
    void ItsDescriptionIsThatOfTheInterfaceFile();
    void ItsDescriptionExplainsThePddSignal();
    void ItIsAChildOfTheScheduler();
    void EachMethodIsForwarded();
    void EverySignalIsRelayed();
};

void SchedulerAdaptorTest::ItsMembersComeInOrder()
{
    const QMetaObject& metaObject = SchedulerAdaptor::staticMetaObject;
    QStringList members;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i)
    {
        const QMetaMethod method = metaObject.method(i);
        members.append(QString::fromLatin1(method.methodSignature() + " [" + method.parameterNames().join(", ") + "] " +
                                           method.typeName()));
    }
    const QStringList expected{u"ExpectedPddAction(uint,bool) [actionId, enable] void"_s,
                               u"SchedulingEnabled(bool,QString) [enabled, filename] void"_s,
                               u"IsEnabled(bool&,QString&) [enabled, filename] int"_s,
                               u"Reload() [] int"_s,
                               u"SetEnabled(bool) [enabled] int"_s,
                               u"SetScheduleFile(QString) [filename] int"_s};
    QCOMPARE(members, expected);
    QCOMPARE(metaObject.method(metaObject.methodOffset()).methodType(), QMetaMethod::Signal);
    QCOMPARE(metaObject.method(metaObject.methodOffset() + 1).methodType(), QMetaMethod::Signal);
    QCOMPARE(metaObject.method(metaObject.methodOffset() + 2).methodType(), QMetaMethod::Slot);
}

void SchedulerAdaptorTest::ItHasTwoAttributes()
{
    const QMetaObject& metaObject = SchedulerAdaptor::staticMetaObject;
    QCOMPARE(metaObject.classInfoCount() - metaObject.classInfoOffset(), 2);
    QCOMPARE(metaObject.classInfo(metaObject.classInfoOffset()).name(), "D-Bus Interface");
    QCOMPARE(metaObject.classInfo(metaObject.classInfoOffset() + 1).name(), "D-Bus Introspection");
    QCOMPARE(ClassInfo("D-Bus Interface"), u"com.kestrelix.ozna.schedulerinterface"_s);
}

void SchedulerAdaptorTest::ItsDescriptionIsThatOfTheInterfaceFile()
{
    QFile file(QStringLiteral(OZNA_DBUS_DIR "/com.kestrelix.ozna.schedulerinterface.xml"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const QString begin = u"  <interface name=\"com.kestrelix.ozna.schedulerinterface\">\n"_s;
    const QString end = u"  </interface>\n"_s;
    QVERIFY(text.contains(begin));
    QVERIFY(text.contains(end));
    const qsizetype from = text.indexOf(begin);
    QCOMPARE(ClassInfo("D-Bus Introspection"), text.mid(from, text.indexOf(end) + end.size() - from));
}

void SchedulerAdaptorTest::ItsDescriptionExplainsThePddSignal()
{
    const QString text = ClassInfo("D-Bus Introspection");
    const qsizetype comment = text.indexOf("<!--"_L1);
    const qsizetype commentEnd = text.indexOf("-->"_L1);
    QVERIFY(comment > text.indexOf("\"SchedulingEnabled\""_L1));
    QCOMPARE(text.mid(commentEnd + 3).trimmed().indexOf("<signal name=\"ExpectedPddAction\">"_L1), 0);
    const QString explained = text.mid(comment, commentEnd - comment);
    QVERIFY(explained.contains("action expected from PDD"_L1));
    QVERIFY(explained.contains("0x01=STREAM_MIC"_L1));
    QVERIFY(explained.contains("true to enable, false to disable"_L1));
}

void SchedulerAdaptorTest::ItIsAChildOfTheScheduler()
{
    Create();
    const QPointer<SchedulerAdaptor> adaptor = new SchedulerAdaptor(&Engine());
    QCOMPARE(adaptor->parent(), &Engine());
    End();
    QVERIFY(adaptor.isNull());
}

void SchedulerAdaptorTest::EachMethodIsForwarded()
{
    Create();
    SchedulerAdaptor adaptor(&Engine());
    bool enabled = false;
    QString name;

    QCOMPARE(adaptor.IsEnabled(enabled, name), 0);
    QCOMPARE(enabled, true);
    QCOMPARE(name, u"schedule.csv"_s);

    QCOMPARE(adaptor.SetScheduleFile(u"other.csv"_s), 0);
    QCOMPARE(LogRecorder::Messages().value(0), u"Schedule file set to other.csv"_s);
    LogRecorder::Clear();

    QCOMPARE(adaptor.Reload(), 0);
    QCOMPARE(LogRecorder::Messages().value(0), u"Restarting Schedule..."_s);
    LogRecorder::Clear();

    QCOMPARE(adaptor.SetEnabled(false), 0);
    QCOMPARE(LogRecorder::Messages().value(0), u"Scheduler is enabled"_s);
    QCOMPARE(adaptor.IsEnabled(enabled, name), 0);
    QCOMPARE(enabled, false);
    QCOMPARE(name, u"other.csv"_s);
}

void SchedulerAdaptorTest::EverySignalIsRelayed()
{
    Create();
    const SchedulerAdaptor adaptor(&Engine());
    const QSignalSpy enabling(&adaptor, &SchedulerAdaptor::SchedulingEnabled);
    const QSignalSpy expecting(&adaptor, &SchedulerAdaptor::ExpectedPddAction);
    Engine().SetEnabled(false);
    Engine().OnPddActionRequested(STREAM_MIC, true);
    QCOMPARE(enabling.size(), 1);
    QCOMPARE(enabling[0], (QVariantList{false, u"schedule.csv"_s}));
    QCOMPARE(expecting.size(), 1);
    QCOMPARE(expecting[0], (QVariantList{1U, true}));
}

OZNA_CASE(SchedulerAdaptor, SchedulerAdaptorTest)
#include "tst_SchedulerAdaptor.moc"
