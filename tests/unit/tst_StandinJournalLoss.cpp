#include "JournalClient.h"
#include "JournalSocket.h"
#include "Suite.h"

#include <QTest>

namespace
{

using Entry = JournalSocket::Entry;
constexpr auto EntryOf = JournalClient::EntryOf;

QByteArray Numbered(int number)
{
    return "record " + QByteArray::number(number);
}

} // namespace

// A journal that does not take all, and what is told of the records that were lost.
class StandinJournalLossTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void AJournalThatDoesNotReadIsNotWaitedFor();
    void AJournalThatComesBackIsToldWhatItMissed();
    void ARecordThatIsTooLongIsLost();
};

void StandinJournalLossTest::AJournalThatDoesNotReadIsNotWaitedFor()
{
    constexpr int RECORDS = 20'000;
    const JournalSocket journal;
    JournalClient client;
    for (int i = 0; i < RECORDS; ++i)
        client.Log(4, Numbered(i));
    QList<Entry> entries = journal.Read();
    const auto written = static_cast<int>(entries.size());
    QVERIFY(written > 0 && written < RECORDS);
    client.Log(4, Numbered(RECORDS));
    client.Log(4, Numbered(RECORDS + 1));
    entries += journal.Read();

    // The first records, without a gap; then how many are missing; then what was logged once there was room.
    QCOMPARE(entries.size(), written + 3);
    for (int i = 0; i < written; ++i)
        QCOMPARE(entries.at(i), EntryOf("4", "5", Numbered(i)));
    const Entry& told = entries.at(written);
    QCOMPARE(told.value("MESSAGE").split(']').last(), " Log records lost: " + QByteArray::number(RECORDS - written));
    QCOMPARE(told.value("PRIORITY"), "4");
    QCOMPARE(told.value("OZNA_LEVEL"), "2");
    QCOMPARE(told.value("CODE_FILE"), "LogInterface.cpp");
    QCOMPARE(entries.at(written + 1), EntryOf("4", "5", Numbered(RECORDS)));
    QCOMPARE(entries.at(written + 2), EntryOf("4", "5", Numbered(RECORDS + 1)));
    QCOMPARE(client.StandardErrorText(), QByteArray());
}

void StandinJournalLossTest::AJournalThatComesBackIsToldWhatItMissed()
{
    JournalSocket journal;
    JournalClient client;
    client.Log(4, Numbered(0));
    QCOMPARE(journal.Read().size(), 1);
    journal.Close();
    client.Log(4, Numbered(1));
    client.Log(4, Numbered(2));
    journal.Open();
    client.Log(4, Numbered(3));
    const QList<Entry> entries = journal.Read();
    QCOMPARE(entries.size(), 2);
    QVERIFY(entries.at(0).value("MESSAGE").endsWith(" Log records lost: 2"));
    QCOMPARE(entries.at(1), EntryOf("4", "5", Numbered(3)));
}

// A datagram has a bound; half a record is none.
void StandinJournalLossTest::ARecordThatIsTooLongIsLost()
{
    const JournalSocket journal;
    JournalClient client;
    client.Log(4, QByteArray(10'000'000, 'x'));
    QVERIFY(journal.Read().isEmpty());
    client.Log(4, "text");
    const QList<Entry> entries = journal.Read();
    QCOMPARE(entries.size(), 2);
    QVERIFY(entries.at(0).value("MESSAGE").endsWith(" Log records lost: 1"));
    QCOMPARE(entries.at(1), EntryOf("4", "5", "text"));
}

OZNA_CASE(StandinJournalLoss, StandinJournalLossTest)
#include "tst_StandinJournalLoss.moc"
