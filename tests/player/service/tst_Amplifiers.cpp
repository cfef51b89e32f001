#include "PlayerTest.h"
#include "Suite.h"

using namespace Qt::StringLiterals;

// Amplifiers: outputs of the system, one a bit.
class tst_Amplifiers final : public PlayerTest
{
    Q_OBJECT
private Q_SLOTS:
    void EachBitIsAnOutput_data();
    void EachBitIsAnOutput();
    void ABitWithoutAnOutputIsTold();
    void WithoutOutputsTheyAreNotSetUp();
    void AnOutputThatIsNotThereIsTold();

private:
    void SetOutputs();
    [[nodiscard]] QByteArray Shown() const;
};

void tst_Amplifiers::SetOutputs()
{
    Settings().amplifiers = {{1, u"hall"_s}, {3, u"yard"_s}};
    for (const char* name : {"hall", "yard"})
    {
        Write(u"leds/%1/brightness"_s.arg(QString::fromLatin1(name)), "7\n");
        Write(u"leds/%1/max_brightness"_s.arg(QString::fromLatin1(name)), "255\n");
    }
    StartService();
}

// A file of the system takes the whole of what is written; one of a test keeps what was longer.
QByteArray tst_Amplifiers::Shown() const
{
    return Read(u"leds/hall/brightness"_s).trimmed() + ' ' + Read(u"leds/yard/brightness"_s).trimmed();
}

void tst_Amplifiers::EachBitIsAnOutput_data()
{
    QTest::addColumn<uchar>("mask");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("none") << uchar{0} << QByteArray("0 0");
    QTest::newRow("the first") << uchar{1} << QByteArray("255 0");
    QTest::newRow("the third") << uchar{4} << QByteArray("0 255");
    QTest::newRow("both") << uchar{5} << QByteArray("255 255");
}

void tst_Amplifiers::EachBitIsAnOutput()
{
    QFETCH(const uchar, mask);
    QFETCH(const QByteArray, shown);
    SetOutputs();
    QCOMPARE(Call("SetAmplifiers", {QVariant::fromValue(mask)}), 0);
    QCOMPARE(Shown(), shown);
}

void tst_Amplifiers::ABitWithoutAnOutputIsTold()
{
    SetOutputs();
    QCOMPARE(Call("SetAmplifiers", {QVariant::fromValue(uchar{0x83})}), 4);
    QCOMPARE(Shown(), QByteArray("255 0"));
    EXPECT_LOG(LEVEL_WARNING, {{"1 [service/Amplifiers.cpp] Amplifiers of 0x83 are not set up: [PLAYER] has no keys "
                                "Amplifier1 and so on for them",
                                SoundManager::PATH}});
}

void tst_Amplifiers::WithoutOutputsTheyAreNotSetUp()
{
    QCOMPARE(Call("SetAmplifiers", {QVariant::fromValue(uchar{0})}), 4);
    EXPECT_LOG(LEVEL_WARNING, {{"1 [service/Amplifiers.cpp] Amplifiers of 0x00 are not set up: [PLAYER] has no keys "
                                "Amplifier1 and so on for them",
                                SoundManager::PATH}});
}

void tst_Amplifiers::AnOutputThatIsNotThereIsTold()
{
    SetOutputs();
    QVERIFY(QFile::remove(Path(u"leds/hall/brightness"_s)));
    QCOMPARE(Call("SetAmplifiers", {QVariant::fromValue(uchar{5})}), 8);
    QCOMPARE(Shown(), QByteArray("(none) 255"));
    EXPECT_LOG(LEVEL_WARNING,
               {{u"1 [service/Amplifiers.cpp] There is no output hall in %1"_s.arg(Path(u"leds"_s)).toUtf8(),
                 SoundManager::PATH}});
}

OZNA_CASE(Amplifiers, tst_Amplifiers)

#include "tst_Amplifiers.moc"
