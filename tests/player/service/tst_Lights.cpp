#include "PlayerTest.h"
#include "Suite.h"
#include "peers/LightManager.h"
#include "service/Exports.h"
#include "service/LightObject.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

// The light manager: one intensity and one switch for the outputs of the settings.
class tst_Lights final : public PlayerTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheIntensityShowsOnceTheLightIsOn();
    void OnWithoutAnIntensityItIsFull();
    void AnIntensityIsAShareOfTheRange_data();
    void AnIntensityIsAShareOfTheRange();
    void ItGoesOnFromWhatTheLightsShow();
    void ChangesAreTold();
    void ALightThatIsNotThereIsLeftOut();
    void TheBusCallsIt();

private:
    void WriteLight(const QString& path, const QByteArray& brightness, const QByteArray& greatest) const;
    [[nodiscard]] std::unique_ptr<LightObject> Make(const QStringList& names = {u"lamp"_s, u"panel"_s}) const;
    [[nodiscard]] QByteArray Shown() const;
};

void tst_Lights::WriteLight(const QString& path, const QByteArray& brightness, const QByteArray& greatest) const
{
    Write(path + u"/brightness"_s, brightness);
    Write(path + u"/max_brightness"_s, greatest);
}

std::unique_ptr<LightObject> tst_Lights::Make(const QStringList& names) const
{
    return std::make_unique<LightObject>(names, QStringList{Path(u"leds"_s), Path(u"backlights"_s)});
}

QByteArray tst_Lights::Shown() const
{
    return Read(u"leds/lamp/brightness"_s) + ' ' + Read(u"backlights/panel/brightness"_s);
}

void tst_Lights::TheIntensityShowsOnceTheLightIsOn()
{
    WriteLight(u"leds/lamp"_s, "0", "255");
    WriteLight(u"backlights/panel"_s, "0", "1000");
    const auto light = Make();
    QCOMPARE(light->SetIntensity(40), 0);
    QCOMPARE(Shown(), QByteArray("0 0"));
    QCOMPARE(light->Switch(true), 0);
    QCOMPARE(Shown(), QByteArray("102 400"));
    QCOMPARE(light->SetIntensity(80), 0);
    QCOMPARE(Shown(), QByteArray("204 800"));
    QCOMPARE(light->Switch(false), 0);
    QCOMPARE(Shown().left(1), QByteArray("0"));
    uint intensity = 0;
    bool isOn = true;
    QCOMPARE(light->GetIntensity(intensity), 0);
    QCOMPARE(light->GetSwitch(isOn), 0);
    QCOMPARE(intensity, 80U);
    QVERIFY(!isOn);
}

void tst_Lights::OnWithoutAnIntensityItIsFull()
{
    WriteLight(u"leds/lamp"_s, "0", "255");
    const auto light = Make({u"lamp"_s});
    QCOMPARE(light->Switch(true), 0);
    QCOMPARE(Read(u"leds/lamp/brightness"_s), QByteArray("255"));
}

void tst_Lights::AnIntensityIsAShareOfTheRange_data()
{
    QTest::addColumn<QByteArray>("greatest");
    QTest::addColumn<uint>("intensity");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("a relay") << QByteArray("1") << 40U << QByteArray("1");
    QTest::newRow("little is not off") << QByteArray("255") << 0U + 1 << QByteArray("3");
    QTest::newRow("very little is not off") << QByteArray("7") << 1U << QByteArray("1");
    QTest::newRow("full") << QByteArray("255") << 100U << QByteArray("255");
    QTest::newRow("more than full") << QByteArray("255") << 4'294'967'295U << QByteArray("255");
    QTest::newRow("without a range") << QByteArray() << 40U << QByteArray("1");
}

void tst_Lights::AnIntensityIsAShareOfTheRange()
{
    QFETCH(const QByteArray, greatest);
    QFETCH(const uint, intensity);
    QFETCH(const QByteArray, shown);
    WriteLight(u"leds/lamp"_s, "0", greatest);
    const auto light = Make({u"lamp"_s});
    QCOMPARE(light->SetIntensity(intensity), 0);
    QCOMPARE(light->Switch(true), 0);
    QCOMPARE(Read(u"leds/lamp/brightness"_s), shown);
}

void tst_Lights::ItGoesOnFromWhatTheLightsShow()
{
    WriteLight(u"leds/lamp"_s, "51", "255");
    const auto light = Make({u"lamp"_s});
    uint intensity = 0;
    bool isOn = false;
    QCOMPARE(light->GetIntensity(intensity), 0);
    QCOMPARE(light->GetSwitch(isOn), 0);
    QCOMPARE(intensity, 20U);
    QVERIFY(isOn);
}

void tst_Lights::ChangesAreTold()
{
    WriteLight(u"leds/lamp"_s, "0", "255");
    const auto light = Make({u"lamp"_s});
    const QSignalSpy intensities(light.get(), &LightObject::LedStatus);
    const QSignalSpy switches(light.get(), &LightObject::LedSwitch);
    QCOMPARE(light->SetIntensity(40), 0);
    QCOMPARE(light->Switch(true), 0);
    QCOMPARE(intensities.value(0), QVariantList{40U});
    QCOMPARE(switches.value(0), QVariantList{true});
    QCOMPARE(intensities.size() + switches.size(), 2);
}

void tst_Lights::ALightThatIsNotThereIsLeftOut()
{
    WriteLight(u"leds/lamp"_s, "0", "255");
    const QByteArray record = "2 [service/LightObject.cpp] There is no light panel in " + Path(u"leds"_s).toUtf8() +
                              " or " + Path(u"backlights"_s).toUtf8();
    const auto light = Make();
    EXPECT_LOG(LEVEL_WARNING, {{record, SoundManager::PATH}});
    QCOMPARE(light->Switch(true), 0);
    const auto none = Make({u"panel"_s});
    EXPECT_LOG(LEVEL_WARNING, {{record, SoundManager::PATH}});
    QCOMPARE(none->Switch(true), 4);
    EXPECT_LOG(LEVEL_WARNING, {{"1 [service/LightObject.cpp] No light is there to be switched", SoundManager::PATH}});
}

void tst_Lights::TheBusCallsIt()
{
    WriteLight(u"leds/lamp"_s, "0", "255");
    const auto light = Make({u"lamp"_s});
    QDBusConnection bus = Bus().Connect();
    QVERIFY(Exports::Register(bus, *light));
    const auto call = [this](const QString& method, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(QString::fromLatin1(LightManager::SERVICE),
                                                              QString::fromLatin1(LightManager::PATH),
                                                              u"com.kestrelix.ozna.lightinterface"_s, method);
        message.setArguments(arguments);
        const QDBusPendingCall pending = Bus().Connection().asyncCall(message);
        static_cast<void>(WaitUntil([&] { return pending.isFinished(); }));
        return pending.reply().arguments();
    };
    QCOMPARE(call(u"SetIntensity"_s, {40U}), QVariantList{0});
    QCOMPARE(call(u"Switch"_s, {true}), QVariantList{0});
    QCOMPARE(call(u"GetIntensity"_s, {}), QVariantList({0, 40U}));
    QCOMPARE(call(u"GetSwitch"_s, {}), QVariantList({0, true}));
    QCOMPARE(Read(u"leds/lamp/brightness"_s), QByteArray("102"));
}

OZNA_CASE(Lights, tst_Lights)

#include "tst_Lights.moc"
