#include "SoundTest.h"
#include "Suite.h"

namespace
{

constexpr qint64 SECOND = 48'000;
constexpr qint64 APART = 480;
constexpr qint64 GAP_MS = 200;

} // namespace

// Tracks whose files change while the one before them plays. Two seconds of the next one are decoded by then.
class DamagedTracksTest final : public SoundTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheNextTrackChanges_data();
    void TheNextTrackChanges();
    void TheTrackBehindTheNextChanges_data();
    void TheTrackBehindTheNextChanges();

private:
    using Damage = void (*)(const QString& path);
    static void AddDamages();
};

namespace
{

void Write(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

void Replace(const QString& path)
{
    const QString other = path + QStringLiteral(".new");
    Write(other, QByteArray(2000, 'x'));
    QVERIFY(QFile::remove(path));
    QVERIFY(QFile::rename(other, path));
}

void Overwrite(const QString& path)
{
    Write(path, QByteArray(2000, 'x'));
}

void Remove(const QString& path)
{
    QVERIFY(QFile::remove(path));
}

void Truncate(const QString& path)
{
    // The header, and half a second.
    QVERIFY(QFile::resize(path, 44 + SECOND));
}

} // namespace

Q_DECLARE_METATYPE(void (*)(const QString&))

void DamagedTracksTest::AddDamages()
{
    QTest::addColumn<Damage>("damage");
    QTest::addColumn<bool>("isHeldOpen"); // what has been opened is not concerned
    QTest::addColumn<bool>("isBad");      // nothing can be played of what has not been opened
    QTest::newRow("another file in its place") << &Replace << true << true;
    QTest::newRow("removed") << &Remove << true << true;
    QTest::newRow("written over") << &Overwrite << false << true;
    QTest::newRow("cut") << &Truncate << false << false;
}

void DamagedTracksTest::TheNextTrackChanges_data()
{
    AddDamages();
}

void DamagedTracksTest::TheNextTrackChanges()
{
    QFETCH(Damage, damage);
    QFETCH(bool, isHeldOpen);
    const QString next = Tone(QStringLiteral("b.wav"), 4 * SECOND);
    const auto id =
        PlayList({Tone(QStringLiteral("a.wav"), SECOND), next, Tone(QStringLiteral("c.wav"), SECOND / 2)}, GAP_MS);
    QTRY_VERIFY(Of(id).heard_ms);
    QTest::qWait(300);
    damage(next);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 15'000);
    QCOMPARE(*Of(id).ended, QString());
    QCOMPARE(Of(id).ends, 1);
    const auto sounds = End().Sounds(APART);
    QCOMPARE(sounds.size(), 3);
    QCOMPARE(sounds[1].begin - sounds[0].end, GAP_MS * 48);
    const qint64 length = sounds[1].end - sounds[1].begin;
    QVERIFY2(isHeldOpen ? length == 4 * SECOND : length >= 2 * SECOND && length < 3 * SECOND,
             qPrintable(QString::number(length)));
    QCOMPARE(sounds[2].begin - sounds[1].end, GAP_MS * 48);
    QCOMPARE(sounds[2].end - sounds[2].begin, SECOND / 2);
}

void DamagedTracksTest::TheTrackBehindTheNextChanges_data()
{
    AddDamages();
}

void DamagedTracksTest::TheTrackBehindTheNextChanges()
{
    QFETCH(Damage, damage);
    QFETCH(bool, isBad);
    const QString third = Tone(QStringLiteral("c.wav"), 4 * SECOND);
    const auto id = PlayList({Tone(QStringLiteral("a.wav"), SECOND), Tone(QStringLiteral("b.wav"), 5 * SECOND / 2),
                              third, Tone(QStringLiteral("d.wav"), SECOND / 4)},
                             GAP_MS);
    QTRY_VERIFY(Of(id).heard_ms);
    QTest::qWait(300);
    damage(third);
    QTRY_VERIFY_WITH_TIMEOUT(HasEnded(id), 15'000);
    QCOMPARE(*Of(id).ended, QString());
    QCOMPARE(Of(id).skipped.size(), isBad ? 1 : 0);
    QList<qint64> lengths{SECOND, 5 * SECOND / 2, SECOND / 2, SECOND / 4};
    if (isBad)
        lengths.removeAt(2);
    const auto sounds = End().Sounds(APART);
    QCOMPARE(sounds.size(), lengths.size());
    for (qsizetype i = 0; i < sounds.size(); ++i)
    {
        QCOMPARE(sounds[i].end - sounds[i].begin, lengths[i]);
        if (i > 0)
            QCOMPARE(sounds[i].begin - sounds[i - 1].end, GAP_MS * 48);
    }
}

OZNA_CASE(DamagedTracks, DamagedTracksTest)
#include "tst_DamagedTracks.moc"
