#include "SoundSettings.h"
#include "Suite.h"

class SoundSettingsTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void NoneAreNeeded();
};

void SoundSettingsTest::NoneAreNeeded()
{
    const SoundSettings settings;
    QCOMPARE(settings.output, QStringLiteral("pulse"));
    QCOMPARE(settings.duck_percent, 20.0);
    QCOMPARE(settings.offset_ms, 0);
}

OZNA_CASE(SoundSettings, SoundSettingsTest)
#include "tst_SoundSettings.moc"
