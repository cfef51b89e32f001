#include "BusTest.h"
#include "Suite.h"

#include <ConfigProxy.h>
#include <CpuFreqManagerProxy.h>
#include <GpsManagerProxy.h>
#include <LightManagerProxy.h>

using namespace Qt::StringLiterals;

// The blocking getters of the peers' proxies fill what they are given from a reply of the right length, and leave it
// alone otherwise.
class ProxyGetters : public BusTest
{
    Q_OBJECT

private Q_SLOTS:
    void AGetterTakesAReplyOfTheRightLengthOnly_data();
    void AGetterTakesAReplyOfTheRightLengthOnly();

private:
    // Calls the getter of that name. What it has filled in, with "?" for what it has not, and what it answers.
    QString Get(const QByteArray& getter);
};

namespace
{

constexpr int UNTOUCHED = -7;

template <typename Proxy> Proxy MakeProxy(const PrivateBus& bus, const char* name, const char* object)
{
    return Proxy(u"com.kestrelix.ozna.%1manager"_s.arg(QLatin1String(name)),
                 u"/com/kestrelix/ozna/%1manager/%2"_s.arg(QLatin1String(name), QLatin1String(object)),
                 bus.Connection(), nullptr);
}

QString Shown(const QDBusReply<int>& reply)
{
    return reply.isValid() ? u"status %1"_s.arg(reply.value()) : reply.error().message();
}

} // namespace

QString ProxyGetters::Get(const QByteArray& getter)
{
    QString filled;
    QDBusReply<int> reply;
    if (getter == "freq.GetFreq")
    {
        auto proxy = MakeProxy<CpuFreqManagerProxy>(Bus(), "freq", "freqobj");
        int frequency = UNTOUCHED;
        reply = proxy.GetFreq(frequency);
        filled = QString::number(frequency);
    }
    else if (getter == "light.GetIntensity")
    {
        auto proxy = MakeProxy<LightManagerProxy>(Bus(), "light", "lightobj");
        uint intensity = 7;
        reply = proxy.GetIntensity(intensity);
        filled = QString::number(intensity);
    }
    else if (getter == "light.GetSwitch")
    {
        auto proxy = MakeProxy<LightManagerProxy>(Bus(), "light", "lightobj");
        bool on = false;
        reply = proxy.GetSwitch(on);
        filled = QVariant(on).toString();
    }
    else if (getter == "config.GetStringValue")
    {
        auto proxy = MakeProxy<ConfigProxy>(Bus(), "config", "configobj");
        QString value = u"untouched"_s;
        reply = proxy.GetStringValue(u"GENERAL"_s, u"ServerIp"_s, value);
        filled = value;
    }
    else
    {
        auto proxy = MakeProxy<GpsManagerProxy>(Bus(), "gps", "gpsobj");
        bool online = false;
        int visible = UNTOUCHED;
        int used = UNTOUCHED;
        int mode = UNTOUCHED;
        double latitude = UNTOUCHED;
        double longitude = UNTOUCHED;
        double altitude = UNTOUCHED;
        reply = proxy.GetFix(online, visible, used, mode, latitude, longitude, altitude);
        filled = u"%1 %2 %3 %4 %5 %6 %7"_s.arg(QVariant(online).toString())
                     .arg(visible)
                     .arg(used)
                     .arg(mode)
                     .arg(latitude)
                     .arg(longitude)
                     .arg(altitude);
    }
    return u"%1, %2"_s.arg(filled, Shown(reply));
}

void ProxyGetters::AGetterTakesAReplyOfTheRightLengthOnly_data()
{
    QTest::addColumn<QByteArray>("getter");
    QTest::addColumn<QVariantList>("values");
    QTest::addColumn<QString>("found");
    const auto rows = [](const char* getter, const QVariantList& values, const char* filled, const char* untouched) {
        const auto row = [&](const char* name, const QVariantList& reply, const char* content, const char* answer) {
            QTest::addRow("%s, %s", getter, name)
                << QByteArray(getter) << reply << u"%1, %2"_s.arg(QLatin1String(content), QLatin1String(answer));
        };
        row("as described", values, filled, "status 3");
        row("a value more", values + QVariantList{1}, untouched, "status 3");
        row("the status alone", values.mid(0, 1), untouched, "status 3");
        row("a bus error", {}, untouched, "out of order");
    };
    rows("freq.GetFreq", {3, 456}, "456", "-7");
    rows("light.GetIntensity", {3, 50U}, "50", "7");
    rows("light.GetSwitch", {3, true}, "true", "false");
    rows("config.GetStringValue", {3, u"10.0.0.5"_s}, "10.0.0.5", "untouched");
    rows("gps.GetFix", {3, true, 9, 5, 2, 45.5, 9.25, 120.0}, "true 9 5 2 45.5 9.25 120", "false -7 -7 -7 -7 -7 -7");
}

void ProxyGetters::AGetterTakesAReplyOfTheRightLengthOnly()
{
    QFETCH(QByteArray, getter);
    QFETCH(QVariantList, values);
    QFETCH(QString, found);
    if (values.isEmpty())
        Device().AnswerError(getter.constData(), "out of order");
    else
        Device().AnswerValues(getter.constData(), values);
    QCOMPARE(Get(getter), found);
}

OZNA_CASE(ProxyGetters, ProxyGetters)
#include "tst_ProxyGetters.moc"
