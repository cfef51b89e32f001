#include "Suite.h"
#include "sound/Frames.h"
#include "sound/Mixer.h"

namespace
{

constexpr qint64 BLOCK = 480;
constexpr qint64 BLOCK_NS = 10'000'000;
constexpr qint64 SECOND_NS = 1'000'000'000;
constexpr qint64 YEAR_NS = 31'556'952 * SECOND_NS;

// A constant level, which cannot be mistaken for silence.
class LevelFeed final : public Feed
{
public:
    explicit LevelFeed(qint64 length)
        : m_left(length)
    {
    }

    qint64 Read(float* frames, qint64 count) override
    {
        const qint64 given = std::min(count, m_left);
        std::fill_n(frames, Frames::ToSamples(given), 0.5F);
        m_left -= given;
        return given;
    }
    [[nodiscard]] bool IsReady() const override { return isReady; }
    [[nodiscard]] bool IsOver() const override { return m_left == 0; }

    bool isReady = true;

private:
    qint64 m_left;
};

} // namespace

// The mixer with a clock of the test's own, and no output.
class MixerTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init();
    void AVoiceBeginsAtItsFrame_data();
    void AVoiceBeginsAtItsFrame();
    void AClockThatIsSetCounts_data();
    void AClockThatIsSetCounts();
    void AClockMayBeYearsOff_data();
    void AClockMayBeYearsOff();
    void WhatIsNotReadyBeginsLate();
    void EverythingIsToldOnce();
    void TheSumIsClipped();
    void VolumesOutOfRangeAreLimits();

private:
    // Mixes blocks until the wall clock is there, and notes the first frame that is heard.
    void MixUntil(qint64 end_ns);
    void Add(std::shared_ptr<Feed> feed, std::optional<qint64> due_ns, double volume = 100);

    std::unique_ptr<Mixer> m_mixer;
    std::vector<Mixer::Event> m_events;
    std::array<float, 2 * BLOCK> m_block{};
    qint64 m_now_ns = 0;
    std::optional<qint64> m_heard_ns;
    float m_peak = 0;
    SoundMaker::Id m_last = 0;
};

void MixerTest::init()
{
    m_events.clear();
    m_now_ns = 0;
    m_heard_ns.reset();
    m_peak = 0;
    m_mixer = std::make_unique<Mixer>(Mixer::Settings{20, 0}, [this](const std::vector<Mixer::Event>& events) {
        m_events.insert(m_events.end(), events.begin(), events.end());
    });
}

void MixerTest::Add(std::shared_ptr<Feed> feed, std::optional<qint64> due_ns, double volume)
{
    m_mixer->Add({++m_last, Piece::Place::MESSAGE, std::move(feed), due_ns, volume});
}

void MixerTest::MixUntil(qint64 end_ns)
{
    for (; m_now_ns < end_ns; m_now_ns += BLOCK_NS)
    {
        m_mixer->Mix(m_block.data(), BLOCK, m_now_ns);
        for (qint64 frame = 0; frame < BLOCK; ++frame)
        {
            const float level = m_block[static_cast<std::size_t>(2 * frame)];
            m_peak = std::max(m_peak, level);
            if (level > 0 && !m_heard_ns)
                m_heard_ns = m_now_ns + Frames::ToNs(frame);
        }
    }
}

void MixerTest::AVoiceBeginsAtItsFrame_data()
{
    QTest::addColumn<qint64>("due_ns");
    for (const qint64 due_ns : {qint64(0), qint64(20'833), qint64(5'000'000), qint64(9'979'166), SECOND_NS})
        QTest::addRow("%lld ns", static_cast<long long>(due_ns)) << due_ns;
}

void MixerTest::AVoiceBeginsAtItsFrame()
{
    QFETCH(qint64, due_ns);
    Add(std::make_shared<LevelFeed>(BLOCK), due_ns);
    MixUntil(2 * SECOND_NS);
    QVERIFY(m_heard_ns);
    QVERIFY2(std::abs(*m_heard_ns - due_ns) <= 10'417, qPrintable(QString::number(*m_heard_ns)));
    QCOMPARE(m_events.size(), std::size_t(2));
    QCOMPARE(m_events[0].heard_ns, *m_heard_ns);
    QCOMPARE(m_events[1].heard_ns, *m_heard_ns + BLOCK_NS);
}

void MixerTest::AClockThatIsSetCounts_data()
{
    QTest::addColumn<qint64>("step_ns");
    QTest::newRow("back") << -3 * SECOND_NS;
    QTest::newRow("on") << 3 * SECOND_NS;
    QTest::newRow("on, past the start") << 30 * SECOND_NS;
}

void MixerTest::AClockThatIsSetCounts()
{
    QFETCH(qint64, step_ns);
    const qint64 due_ns = 8 * SECOND_NS;
    Add(std::make_shared<LevelFeed>(BLOCK), due_ns);
    MixUntil(4 * SECOND_NS);
    QVERIFY(!m_heard_ns);
    m_now_ns += step_ns;
    const qint64 set_ns = m_now_ns;
    MixUntil(std::max(due_ns, set_ns) + SECOND_NS);
    QCOMPARE(m_heard_ns, std::max(due_ns, set_ns));
}

// A device without a battery begins in 1970, and the network tells it the time.
void MixerTest::AClockMayBeYearsOff_data()
{
    QTest::addColumn<int>("years");
    for (const int years : {1, 7, 20, 56, 200})
    {
        QTest::addRow("%d years on", years) << years;
        QTest::addRow("%d years back", years) << -years;
    }
}

void MixerTest::AClockMayBeYearsOff()
{
    QFETCH(int, years);
    m_now_ns = years < 0 ? -years * YEAR_NS : 0;
    const qint64 due_ns = m_now_ns + 8 * SECOND_NS;
    Add(std::make_shared<LevelFeed>(BLOCK), due_ns);
    MixUntil(m_now_ns + SECOND_NS);
    QVERIFY(!m_heard_ns);
    m_now_ns += years * YEAR_NS;
    const qint64 set_ns = m_now_ns;
    MixUntil(set_ns + SECOND_NS);
    // What is past begins at once; what is years ahead waits.
    QCOMPARE(m_heard_ns, years > 0 ? std::optional(set_ns) : std::nullopt);
    m_now_ns = due_ns - SECOND_NS;
    MixUntil(due_ns + SECOND_NS);
    QCOMPARE(m_heard_ns, years > 0 ? set_ns : due_ns);
}

void MixerTest::WhatIsNotReadyBeginsLate()
{
    const auto feed = std::make_shared<LevelFeed>(BLOCK);
    feed->isReady = false;
    Add(feed, SECOND_NS);
    MixUntil(2 * SECOND_NS);
    QVERIFY(!m_heard_ns && m_events.empty());
    feed->isReady = true;
    MixUntil(3 * SECOND_NS);
    QCOMPARE(m_heard_ns, 2 * SECOND_NS);
}

void MixerTest::EverythingIsToldOnce()
{
    Add(std::make_shared<LevelFeed>(10 * BLOCK), {});
    Add(std::make_shared<LevelFeed>(10 * BLOCK), BLOCK_NS / 2);
    Add(std::make_shared<LevelFeed>(10 * BLOCK), BLOCK_NS / 3);
    m_mixer->Stop(m_last);
    Add(std::make_shared<LevelFeed>(10 * BLOCK), 100 * SECOND_NS);
    m_mixer->Remove(m_last);
    MixUntil(SECOND_NS);
    QMap<SoundMaker::Id, QString> told;
    for (const Mixer::Event& event : m_events)
        told[event.id].append(event.kind == Mixer::Event::Kind::BEGUN ? u'b' : u'e');
    const QStringList expected{QStringLiteral("be"), QStringLiteral("be"), QStringLiteral("e")};
    QCOMPARE(told.values(), expected);
}

void MixerTest::TheSumIsClipped()
{
    for (int voice = 0; voice < 3; ++voice)
        m_mixer->Add({++m_last,
                      voice == 0   ? Piece::Place::STREAM
                      : voice == 1 ? Piece::Place::RADIO
                                   : Piece::Place::AUX,
                      std::make_shared<LevelFeed>(BLOCK),
                      {},
                      100});
    MixUntil(SECOND_NS);
    QCOMPARE(m_peak, 1.0F);
}

void MixerTest::VolumesOutOfRangeAreLimits()
{
    Add(std::make_shared<LevelFeed>(BLOCK), {}, 500);
    MixUntil(SECOND_NS);
    QCOMPARE(m_peak, 0.5F);
    Add(std::make_shared<LevelFeed>(BLOCK), {}, -20);
    m_peak = 0;
    MixUntil(2 * SECOND_NS);
    QCOMPARE(m_peak, 0.0F);
}

OZNA_CASE(Mixer, MixerTest)
#include "tst_Mixer.moc"
