#include "Suite.h"
#include "ear/Outputs.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// What a card is called, and which output of a list a setting means.
class OutputsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void ACardIsCalledByItsLastingName();
    void ASettingIsInTheListOrNot_data();
    void ASettingIsInTheListOrNot();

private:
    QTemporaryDir m_cards;
};

void OutputsTest::initTestCase()
{
    QVERIFY(QDir(m_cards.path()).mkpath(u"card1"_s));
    QFile file(m_cards.filePath(u"card1/id"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("PCH\n") == 4);
}

void OutputsTest::ACardIsCalledByItsLastingName()
{
    QCOMPARE(Outputs::LastingName(u"hw:1,0"_s, m_cards.path()), u"plughw:CARD=PCH,DEV=0"_s);
    QCOMPARE(Outputs::LastingName(u"hw:2,0"_s, m_cards.path()), u"plughw:2,0"_s);
    QCOMPARE(Outputs::LastingName(u"default"_s, m_cards.path()), u"default"_s);
}

void OutputsTest::ASettingIsInTheListOrNot_data()
{
    using Presence = Outputs::Presence;
    QTest::addColumn<QString>("setting");
    QTest::addColumn<Presence>("presence");
    const auto row = [](const QString& setting, Presence presence) {
        QTest::newRow(qPrintable(setting)) << setting << presence;
    };
    row(u"pulse"_s, Presence::THERE);
    row(u"pulse:hall"_s, Presence::THERE);
    row(u"pulse:yard"_s, Presence::MISSING);
    for (const QString& name : {u"plughw:CARD=PCH,DEV=0"_s, u"hw:CARD=PCH,DEV=0"_s, u"plughw:PCH,0"_s, u"hw:PCH"_s,
                                u"hw:1,0"_s, u"plughw:1"_s})
        row(u"alsa:"_s + name, Presence::THERE);
    for (const QString& name : {u"plughw:CARD=PCH,DEV=1"_s, u"hw:CARD=USB"_s, u"plughw:0,0"_s})
        row(u"alsa:"_s + name, Presence::MISSING);
    for (const QString& name : {u"default"_s, u"dmix:CARD=PCH"_s, u"hall"_s})
        row(u"alsa:"_s + name, Presence::UNKNOWN);
    row(u"alsa:"_s, Presence::MISSING);
    row(u"file:"_s + m_cards.filePath(u"sound.raw"_s), Presence::THERE);
    row(u"file:"_s + m_cards.filePath(u"none/sound.raw"_s), Presence::MISSING);
    row(u"file:"_s, Presence::MISSING);
    row(u"auto"_s, Presence::MISSING);
}

void OutputsTest::ASettingIsInTheListOrNot()
{
    QFETCH(const QString, setting);
    QFETCH(const Outputs::Presence, presence);
    const QList<Outputs::Output> outputs{{u"pulse"_s, u"Hall"_s},
                                         {u"pulse:hall"_s, u"Hall"_s},
                                         {u"alsa:plughw:CARD=PCH,DEV=0"_s, u"A card"_s},
                                         {u"alsa:plughw:2,0"_s, u"Another one"_s}};
    QCOMPARE(Outputs::PresenceOf(setting, outputs, m_cards.path()), presence);
}

OZNA_CASE(Outputs, OutputsTest)
#include "tst_Outputs.moc"
