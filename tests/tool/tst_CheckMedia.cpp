#include "CheckRun.h"
#include "CommandCall.h"
#include "Suite.h"
#include "sound/SoundFile.h"

#include <QtEndian>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace
{

constexpr int FAILED = 3;
constexpr int RATE_HZ = 4000;
constexpr const char* NO_LIBRARY = "built without libsndfile";

QByteArray Little32(int value)
{
    QByteArray bytes(sizeof(quint32), '\0');
    qToLittleEndian(static_cast<quint32>(value), bytes.data());
    return bytes;
}

QByteArray Little16(int value)
{
    return Little32(value).first(sizeof(quint16));
}

// A wav file of silence: one channel, eight bits.
QByteArray Wav(int milliseconds)
{
    const QByteArray sound(milliseconds * RATE_HZ / 1000, '\x80');
    const QByteArray format =
        Little16(1) + Little16(1) + Little32(RATE_HZ) + Little32(RATE_HZ) + Little16(1) + Little16(8);
    const QByteArray body = "WAVEfmt " + Little32(static_cast<int>(format.size())) + format + "data" +
                            Little32(static_cast<int>(sound.size())) + sound;
    return "RIFF" + Little32(static_cast<int>(body.size())) + body;
}

} // namespace

// What a check says of the sounds that a schedule names.
class CheckMediaTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void EachFormatTellsItsLength_data();
    void EachFormatTellsItsLength();
    void LengthsMayDifferByTwoSeconds_data();
    void LengthsMayDifferByTwoSeconds();
    void AMessageMustNotBeginWithinAnother_data();
    void AMessageMustNotBeginWithinAnother();
    void WithoutTheOptionNoSoundIsLookedFor();
    void AFolderThatIsNoneFails();
    void TheOptionFailsOnlyWithoutTheLibrary();

private:
    [[nodiscard]] CommandCall::Result Check(const QByteArray& schedule, const QStringList& options) const;
    [[nodiscard]] QStringList Findings(const QByteArray& schedule) const;

    CommandCall m_call;
};

void CheckMediaTest::initTestCase()
{
    m_call.Write(u"sounds/long.wav"_s, Wav(60500));
    m_call.Write(u"sounds/short.wav"_s, Wav(2000));
}

CommandCall::Result CheckMediaTest::Check(const QByteArray& schedule, const QStringList& options) const
{
    m_call.Write(u"schedule/schedule.csv"_s, schedule);
    return m_call.Run(QStringList{u"check"_s, u"schedule/schedule.csv"_s, u"--today"_s, u"2024-05-15"_s} + options);
}

QStringList CheckMediaTest::Findings(const QByteArray& schedule) const
{
    QStringList lines = Check(schedule, {u"--media"_s, u"sounds"_s}).output.split(u'\n', Qt::SkipEmptyParts);
    if (!lines.isEmpty())
        lines.removeLast(); // which counts them
    return lines;
}

void CheckMediaTest::EachFormatTellsItsLength_data()
{
    QTest::addColumn<QString>("file");
    for (const char* file : {"gong.mp3", "bell.ogg", "tone.flac", "hours/chime.opus"})
        QTest::newRow(file) << QString::fromLatin1(file);
}

void CheckMediaTest::EachFormatTellsItsLength()
{
    QFETCH(const QString, file);
    if (!SoundFile::IsSupported())
        QSKIP(NO_LIBRARY);
    const SoundFile sound = SoundFile::Read(CheckRun::DataFolder() + u"/media/"_s + file);
    QCOMPARE(sound.error, QString());
    // The frames of an mp3 file have a length of their own.
    QVERIFY2(sound.length_s >= 4 && sound.length_s < 4.3, QByteArray::number(sound.length_s).constData());
}

void CheckMediaTest::LengthsMayDifferByTwoSeconds_data()
{
    QTest::addColumn<int>("duration_s");
    QTest::addColumn<bool>("isTold");
    // The sound has 60.5 s.
    QTest::newRow("58 s") << 58 << true;
    QTest::newRow("59 s") << 59 << false;
    QTest::newRow("62 s") << 62 << false;
    QTest::newRow("63 s") << 63 << true;
}

void CheckMediaTest::LengthsMayDifferByTwoSeconds()
{
    QFETCH(const int, duration_s);
    QFETCH(const bool, isTold);
    if (!SoundFile::IsSupported())
        QSKIP(NO_LIBRARY);
    m_call.Write(u"playlists/morning"_s, "long.wav;" + QByteArray::number(duration_s) + "\nshort.wav;2\n");
    const QByteArray schedule = "1111111|08:00:00|*|*|*|||PlayPlaylist|morning\n";
    const QStringList findings = Findings(schedule);
    QCOMPARE(findings.filter(u" [media-length]"_s).size(), isTold ? 1 : 0);
    QCOMPARE(findings.size(), isTold ? 1 : 0);
    if (!isTold)
        return;
    // What is written as the advice says is found no more.
    const QString advice = u"; write "_s;
    const qsizetype begin = findings[0].indexOf(advice) + advice.size();
    const QString track = findings[0].mid(begin, findings[0].indexOf(u" [") - begin);
    m_call.Write(u"playlists/morning"_s, track.toUtf8() + "\nshort.wav;2\n");
    QCOMPARE(Findings(schedule), QStringList());
}

void CheckMediaTest::AMessageMustNotBeginWithinAnother_data()
{
    QTest::addColumn<QByteArray>("schedule");
    QTest::addColumn<QString>("told");

    const auto row = [](const char* name, const QByteArray& lines, const char* told) {
        QTest::newRow(name) << lines << QString::fromLatin1(told);
    };
    const QByteArray first = "1111111|08:00:00|*|*|*|||PlayMessage|long.wav\n";
    row("within", first + "1111111|08:01:00|*|*|*|||PlayMessage|short.wav\n", "plays until 08:01:01");
    row("behind", first + "1111111|08:01:01|*|*|*|||PlayMessage|short.wav\n", "");
    row("at once", first + "1111111|08:00:00|*|*|*|||PlayMessage|short.wav\n", "in the same second");
    row("on another day",
        "1111100|08:00:00|*|*|*|||PlayMessage|long.wav\n0000011|08:00:30|*|*|*|||PlayMessage|short.wav\n", "");
    row("past midnight",
        "0000001|23:59:30|*|*|*|||PlayMessage|long.wav\n1000000|00:00:10|*|*|*|||PlayMessage|short.wav\n",
        "plays until 00:00:31");
    row("stopped before",
        first + "1111111|08:00:30|*|*|*|||StopMessage\n1111111|08:00:40|*|*|*|||PlayMessage|short.wav\n", "");
    row("stopped on other days",
        first + "1111100|08:00:30|*|*|*|||StopMessage\n1111111|08:00:40|*|*|*|||PlayMessage|short.wav\n",
        "plays until 08:01:01");
}

void CheckMediaTest::AMessageMustNotBeginWithinAnother()
{
    QFETCH(const QByteArray, schedule);
    QFETCH(const QString, told);
    if (!SoundFile::IsSupported())
        QSKIP(NO_LIBRARY);
    const QStringList findings = Findings(schedule);
    QCOMPARE(findings.size(), told.isEmpty() ? 0 : 1);
    if (told.isEmpty())
        return;
    QVERIFY2(findings[0].contains(told), qPrintable(findings[0]));
    QVERIFY2(findings[0].endsWith(u" [two-messages]"_s), qPrintable(findings[0]));
}

void CheckMediaTest::WithoutTheOptionNoSoundIsLookedFor()
{
    const QString output = Check("1111111|08:00:00|*|*|*|||PlayMessage|gone.wav\n", {}).output;
    QCOMPARE(output, u"1 line, 0 errors, 0 warnings\n"_s);
}

void CheckMediaTest::AFolderThatIsNoneFails()
{
    if (!SoundFile::IsSupported())
        QSKIP(NO_LIBRARY);
    const CommandCall::Result result =
        Check("1111111|08:00:00|*|*|*|||PlayMessage|gone.wav\n", {u"--media"_s, u"nowhere"_s});
    QCOMPARE(result.status, FAILED);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.contains(u"--media: nowhere: is not a folder"_s), qPrintable(result.errors));
}

void CheckMediaTest::TheOptionFailsOnlyWithoutTheLibrary()
{
    const CommandCall::Result result =
        Check("1111111|08:00:00|*|*|*|||PlayMessage|gone.wav\n", {u"--media"_s, u"sounds"_s});
    if (SoundFile::IsSupported())
    {
        QVERIFY2(result.output.contains(u" [media-missing]"_s), qPrintable(result.errors));
        return;
    }
    QCOMPARE(result.status, FAILED);
    QCOMPARE(result.output, QString());
    QVERIFY2(result.errors.contains(u"built without libsndfile"_s), qPrintable(result.errors));
}

OZNA_CASE(CheckMedia, CheckMediaTest)
#include "tst_CheckMedia.moc"
