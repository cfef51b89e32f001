#include "Suite.h"
#include "ear/GongCall.h"

#include <QDateTime>
#include <QFile>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

// What becomes of a gong that a sound maker plays, refuses, or forgets.
class GongCallTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void WhatIsHeardIsTold();
    void TheReasonIsTold();
    void AnEndWithoutASoundIsNoSuccess();
    void WhatBelongsToOthersDoesNotCount();
    void AMomentIsAWholeStepAndFarEnoughAhead();
};

namespace
{

// Does what a test has it do, as soon as it is asked to play.
class ScriptedSound final : public SoundMaker
{
public:
    static constexpr Id OWN = 7;
    using Script = std::function<void(ScriptedSound&)>;

    explicit ScriptedSound(Script script)
        : m_script(std::move(script))
    {
    }

    Id Play(const Piece& piece) override
    {
        m_piece = piece;
        m_isFileThere = QFile::exists(piece.sources.value(0));
        QTimer::singleShot(0, this, [this] { m_script(*this); });
        return OWN;
    }
    void Stop(Id /*id*/) override {}
    void SetVolume(Id /*id*/, double /*volume*/) override {}
    void SetMasterVolume(double /*volume*/) override {}

    [[nodiscard]] const Piece& Asked() const { return m_piece; }
    [[nodiscard]] bool IsFileThere() const { return m_isFileThere; }

private:
    const Script m_script;
    Piece m_piece;
    bool m_isFileThere = false;
};

constexpr qint64 LENGTH_MS = 100;

GongCall::Outcome PlayOne(ScriptedSound& sound, qint64 due_ms)
{
    GongCall gong(sound, LENGTH_MS);
    return gong.Play(due_ms);
}

qint64 Soon_ms()
{
    return QDateTime::currentMSecsSinceEpoch() + 1000;
}

} // namespace

void GongCallTest::WhatIsHeardIsTold()
{
    const qint64 due_ms = Soon_ms();
    ScriptedSound sound([due_ms](ScriptedSound& self) {
        Q_EMIT self.Started(ScriptedSound::OWN, due_ms + 3);
        Q_EMIT self.Ended(ScriptedSound::OWN, {});
    });
    const GongCall::Outcome outcome = PlayOne(sound, due_ms);
    QCOMPARE(outcome.heard_ms, due_ms + 3);
    QCOMPARE(outcome.reason, QString());
    QCOMPARE(sound.Asked().due_ms, due_ms);
    QVERIFY(sound.Asked().place == Piece::Place::MESSAGE);
    QVERIFY(sound.IsFileThere());
}

void GongCallTest::TheReasonIsTold()
{
    ScriptedSound sound([](ScriptedSound& self) { Q_EMIT self.Ended(ScriptedSound::OWN, u"no output"_s); });
    const GongCall::Outcome outcome = PlayOne(sound, Soon_ms());
    QVERIFY(!outcome.heard_ms);
    QCOMPARE(outcome.reason, u"no output"_s);
}

void GongCallTest::AnEndWithoutASoundIsNoSuccess()
{
    ScriptedSound sound([](ScriptedSound& self) { Q_EMIT self.Ended(ScriptedSound::OWN, {}); });
    QCOMPARE(PlayOne(sound, Soon_ms()).reason, u"it ended without a sound"_s);
}

void GongCallTest::WhatBelongsToOthersDoesNotCount()
{
    const qint64 due_ms = Soon_ms();
    ScriptedSound sound([due_ms](ScriptedSound& self) {
        Q_EMIT self.Started(ScriptedSound::OWN + 1, 5);
        Q_EMIT self.Ended(ScriptedSound::OWN + 1, u"another one"_s);
        QTimer::singleShot(10, &self, [&self, due_ms] {
            Q_EMIT self.Started(ScriptedSound::OWN, due_ms);
            Q_EMIT self.Started(ScriptedSound::OWN + 1, 6);
            Q_EMIT self.Ended(ScriptedSound::OWN, {});
        });
    });
    const GongCall::Outcome outcome = PlayOne(sound, due_ms);
    QCOMPARE(outcome.heard_ms, due_ms);
    QCOMPARE(outcome.reason, QString());
}

void GongCallTest::AMomentIsAWholeStepAndFarEnoughAhead()
{
    const qint64 before_ms = QDateTime::currentMSecsSinceEpoch();
    const qint64 moment_ms = GongCall::NextMoment_ms(1000);
    const qint64 after_ms = QDateTime::currentMSecsSinceEpoch();
    QCOMPARE(moment_ms % 1000, 0);
    QVERIFY(moment_ms >= before_ms + 3000);
    QVERIFY(moment_ms < after_ms + 3000 + 1000);
}

OZNA_CASE(GongCall, GongCallTest)
#include "tst_GongCall.moc"
