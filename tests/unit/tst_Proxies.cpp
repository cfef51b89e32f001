#include "Rows.h"
#include "Suite.h"
#include "TextDiff.h"
#include "UnitTest.h"

#include <ConfigProxy.h>
#include <CpuFreqManagerProxy.h>
#include <GpsManagerProxy.h>
#include <LightManagerProxy.h>
#include <NetworkManagerProxy.h>
#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>
#include <UpdateManagerProxy.h>

#include <QMetaMethod>

using namespace Qt::StringLiterals;

namespace
{

// "slot SetFreq(int) [FreqMHz] QDBusPendingReply<int>"
QString Shown(const QMetaMethod& method)
{
    const bool isSignal = method.methodType() == QMetaMethod::Signal;
    return u"%1 %2 [%3] %4"_s.arg(isSignal ? "signal"_L1 : "slot"_L1, QString::fromLatin1(method.methodSignature()),
                                  QString::fromLatin1(method.parameterNames().join(", ")),
                                  QString::fromLatin1(method.typeName()));
}

QStringList Members(const QMetaObject& metaObject)
{
    QStringList members;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i)
        members.append(Shown(metaObject.method(i)));
    return members;
}

} // namespace

Q_DECLARE_METATYPE(const QMetaObject*)

class ProxiesTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AProxyHasTheMembersOfItsInterfaceInOrder_data();
    void AProxyHasTheMembersOfItsInterfaceInOrder();
    void AProxySpeaksItsInterface();
};

void ProxiesTest::AProxyHasTheMembersOfItsInterfaceInOrder_data()
{
    Rows<const QMetaObject*, QStringList>::Add({
        {"update manager",
         &UpdateManagerProxy::staticMetaObject,
         {u"signal FilesUpdateStarted(int,int) [Status, FileType] void"_s,
          u"signal FilesUpdated(int,int) [Status, FileType] void"_s,
          u"slot UpdateFiles(int,QString) [FileType, FileName] "
          "QDBusPendingReply<int>"_s}},
        {"configuration manager",
         &ConfigProxy::staticMetaObject,
         {u"signal ConfigChanged(QString,QString,QString) [KeyGroup, KeyName, StringValue] void"_s,
          u"slot GetStringValue(QString,QString) [KeyGroup, Keyname] QDBusPendingReply<int,QString>"_s,
          u"slot GetStringValue(QString,QString,QString&) [KeyGroup, Keyname, StringValue] QDBusReply<int>"_s,
          u"slot SetStringValue(QString,QString,QString) [KeyGroup, Keyname, StringValue] "
          "QDBusPendingReply<int>"_s}},
        {"processor-frequency manager",
         &CpuFreqManagerProxy::staticMetaObject,
         {u"signal FreqChanged(int) [NewFreqMHz] void"_s, u"slot GetFreq() [] QDBusPendingReply<int,int>"_s,
          u"slot GetFreq(int&) [FreqMHz] QDBusReply<int>"_s, u"slot Reboot() [] QDBusPendingReply<int>"_s,
          u"slot SetFreq(int) [FreqMHz] QDBusPendingReply<int>"_s,
          u"slot SetWakeup(uchar,QString) [ModeMask, WakeupTime] QDBusPendingReply<int>"_s,
          u"slot Shutdown() [] QDBusPendingReply<int>"_s, u"slot Suspend() [] QDBusPendingReply<int>"_s}},
        {"GPS manager",
         &GpsManagerProxy::staticMetaObject,
         {u"signal FixChanged(int,double,double,double,int,int) [NewFixMode, Latitude, Longitude, "
          "Altitude, SatellitesVisible, SatellitesUsed] void"_s,
          u"slot GetFix() [] QDBusPendingReply<int,bool,int,int,int,double,double,double>"_s,
          u"slot GetFix(bool&,int&,int&,int&,double&,double&,double&) [GpsOnline, SatellitesVisible, "
          "SatellitesUsed, FixMode, Latitude, Longitude, Altitude] QDBusReply<int>"_s,
          u"slot SetEnabled(bool) [Enabled] QDBusPendingReply<int>"_s,
          u"slot UpdateFix() [] QDBusPendingReply<int>"_s}},
        {"light manager",
         &LightManagerProxy::staticMetaObject,
         {u"signal LedStatus(uint) [Intensity] void"_s, u"signal LedSwitch(bool) [On] void"_s,
          u"slot GetIntensity() [] QDBusPendingReply<int,uint>"_s,
          u"slot GetIntensity(uint&) [Intensity] QDBusReply<int>"_s,
          u"slot GetSwitch() [] QDBusPendingReply<int,bool>"_s, u"slot GetSwitch(bool&) [On] QDBusReply<int>"_s,
          u"slot SetIntensity(uint) [Intensity] QDBusPendingReply<int>"_s,
          u"slot Switch(bool) [On] QDBusPendingReply<int>"_s}},
        {"photo manager",
         &PhotoManagerProxy::staticMetaObject,
         {u"signal CameraEnabled(bool) [Enabled] void"_s, u"signal PhotoStreamStopped(int) [ImagesNum] void"_s,
          u"signal PhotoTaken(int,QString) [Status, ImagePath] void"_s,
          u"slot EnableCamera(bool) [Enable] QDBusPendingReply<int>"_s,
          u"slot StopPhotoStream() [] QDBusPendingReply<int>"_s, u"slot TakePhoto() [] QDBusPendingReply<int>"_s,
          u"slot TakePhotoStream(int) [Interval_s] QDBusPendingReply<int>"_s}},
        {"sound manager, as the stand-in has it",
         &SoundManagerProxy::staticMetaObject,
         {u"signal PlayFileCompleted(QString) [file] void"_s,
          u"signal PlayPlaylistCompleted(QString) [playlist] void"_s, u"signal StreamEnabled(bool) [enabled] void"_s}},
        {"network manager, as the stand-in has it", &NetworkManagerProxy::staticMetaObject, {}},
    });
}

void ProxiesTest::AProxyHasTheMembersOfItsInterfaceInOrder()
{
    const auto& [metaObject, members] = Rows<const QMetaObject*, QStringList>::Current();
    const QByteArray difference = TextDiff(members, Members(*metaObject), "member");
    QVERIFY2(difference.isEmpty(), difference.constData());
    QCOMPARE(metaObject->superClass(), &QDBusAbstractInterface::staticMetaObject);
}

void ProxiesTest::AProxySpeaksItsInterface()
{
    for (const auto& [interface, name] : {
             std::pair(UpdateManagerProxy::staticInterfaceName(), "update"),
             {ConfigProxy::staticInterfaceName(), "config"},
             {CpuFreqManagerProxy::staticInterfaceName(), "freq"},
             {GpsManagerProxy::staticInterfaceName(), "gps"},
             {LightManagerProxy::staticInterfaceName(), "light"},
             {PhotoManagerProxy::staticInterfaceName(), "photo"},
             {SoundManagerProxy::staticInterfaceName(), "sound"},
             {NetworkManagerProxy::staticInterfaceName(), "network"},
         })
        QCOMPARE(QByteArray(interface), "com.kestrelix.ozna."_ba + name + "interface");
}

OZNA_CASE(Proxies, ProxiesTest)
#include "tst_Proxies.moc"
