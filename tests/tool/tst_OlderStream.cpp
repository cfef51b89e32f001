#include "CommandCall.h"
#include "Suite.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

using namespace Qt::StringLiterals;

// A stream that nothing stops for certain has begun before all that a rehearsal goes through: no output tells when.
class tst_OlderStream final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase();
    void JsonHasNoStart();
    void CsvHasNoTime();
    void TheCalendarBeginsWithTheRehearsal();
    void ThePageHasNoTime();
    void AStreamThatIsStoppedHasAStart();

private:
    [[nodiscard]] QString Rehearse(const QString& options) const
    {
        return m_call.Run(u"rehearse s.csv --from 2024-05-15 --days 1 --tz Europe/Rome %1"_s.arg(options).split(u' '))
            .output;
    }

    CommandCall m_call;
};

void tst_OlderStream::initTestCase()
{
    m_call.Write(u"s.csv"_s, "1000000|08:00:00|*|*|*|||PlayStream|8554/b\n1111111|09:00:00|*|*|*|||Volume|5\n");
    m_call.Write(u"stopped.csv"_s, "1000000|08:00:00|*|*|*|||PlayStream|8554/b\n1000000|07:00:00|*|*|*|||StopStream\n");
}

void tst_OlderStream::JsonHasNoStart()
{
    const QJsonArray events =
        QJsonDocument::fromJson(Rehearse(u"--json"_s).toUtf8()).object().value(u"events").toArray();
    QCOMPARE(events.size(), 2);
    const QJsonObject older = events[0].toObject();
    for (const char* const name : {"time", "start", "due", "begin"})
    {
        QVERIFY2(older.contains(QLatin1String(name)), name);
        QVERIFY2(older[QLatin1String(name)].isNull(), name);
    }
    QCOMPARE(older[u"startKnown"], QJsonValue(false));
    QVERIFY(older[u"requests"][0][u"time"].isNull());
    QCOMPARE(older[u"requests"][0][u"method"].toString(), u"PlayStream"_s);
    QVERIFY(events[1][u"startKnown"].isUndefined());
    QCOMPARE(events[1][u"start"].toString(), u"2024-05-15T09:00:00+02:00"_s);
}

void tst_OlderStream::CsvHasNoTime()
{
    const QStringList rows = Rehearse(u"--csv"_s).split(u"\r\n"_s);
    QVERIFY2(rows[1].startsWith(u",,1,PlayStream,playing,\"nothing stops the streams for certain: "_s),
             qPrintable(rows[1]));
    QVERIFY2(rows[2].startsWith(u"2024-05-15T09:00:00+02:00,2024-05-15T09:00:00+02:00,2,Volume,"_s),
             qPrintable(rows[2]));
}

void tst_OlderStream::TheCalendarBeginsWithTheRehearsal()
{
    const CommandCall::Result result = m_call.Run("rehearse s.csv --from 2024-05-15 --days 1 --tz Europe/Rome --ics");
    if (result.status == 3)
        QSKIP("built without libical");
    QVERIFY2(result.output.contains(u"\r\nDTSTART:20240514T220000Z\r\nDTEND:20240515T220000Z\r\nSUMMARY:Stream "_s),
             qPrintable(result.output));
    QVERIFY2(result.output.contains(u"\r\nUID:before-16-1-"_s), qPrintable(result.output));
}

void tst_OlderStream::ThePageHasNoTime()
{
    const QString page = Rehearse(u"--html -"_s);
    QVERIFY2(page.contains(u">Plays from before this rehearsal on: it goes on behind the end of this rehearsal</p>"_s),
             qPrintable(page));
    QVERIFY(page.contains(u"<li><code><bdi>soundmanager PlayStream("_s));
    QVERIFY(!page.contains(u"<time>08:00:00</time>"_s));
    QVERIFY(page.contains(u"<time>09:00:00</time> <code><bdi>soundmanager SetMasterVolume("_s));
}

void tst_OlderStream::AStreamThatIsStoppedHasAStart()
{
    const CommandCall::Result result =
        m_call.Run("rehearse stopped.csv --from 2024-05-15 --days 1 --tz Europe/Rome --json");
    const QJsonObject event = QJsonDocument::fromJson(result.output.toUtf8()).object()[u"events"][0].toObject();
    QCOMPARE(event[u"start"].toString(), u"2024-05-13T08:00:00+02:00"_s);
    QVERIFY(!event.contains(u"startKnown"));
}

OZNA_CASE(OlderStream, tst_OlderStream)
#include "tst_OlderStream.moc"
