#include "JournalClient.h"
#include "JournalSocket.h"
#include "LogChannel.h"
#include "Rows.h"
#include "Suite.h"

#include <LogInterface.h>

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

using Entry = JournalSocket::Entry;
constexpr auto EntryOf = JournalClient::EntryOf;
constexpr auto STREAM_VARIABLE = JournalClient::STREAM_VARIABLE;

} // namespace

// How the log client writes to the system's journal, and when.
class StandinJournalTest final : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void ALevelIsAPriority_data();
    void ALevelIsAPriority();
    void ARecordNamesItsPlace_data();
    void ARecordNamesItsPlace();
    void ATextCannotForgeAField_data();
    void ATextCannotForgeAField();
    void TheLevelIsFiltered();
    void OnlyWhatTheJournalReadsGoesThere_data();
    void OnlyWhatTheJournalReadsGoesThere();
};

void StandinJournalTest::ALevelIsAPriority_data()
{
    Rows<QByteArray, QByteArray>::Add({
        {"nothing", "0", "3"},
        {"error", "1", "3"},
        {"warning", "2", "4"},
        {"unused", "3", "5"},
        {"progress", "4", "5"},
        {"detail", "5", "6"},
        {"between detail and trace", "8", "6"},
        {"trace", "9", "7"},
        {"beyond trace", "10", "7"},
    });
}

void StandinJournalTest::ALevelIsAPriority()
{
    const auto& [level, priority] = Rows<QByteArray, QByteArray>::Current();
    const JournalSocket journal;
    JournalClient client;
    client.Log(level.toUInt(), "text");
    QCOMPARE(journal.Read(), QList{EntryOf(level, priority, "text")});
    QCOMPARE(client.StandardErrorText(), QByteArray());
}

void StandinJournalTest::ARecordNamesItsPlace_data()
{
    Rows<QByteArray, QByteArray, QByteArray>::Add({
        {"a file", "[main.cpp:100] text", "main.cpp", "100"},
        {"a file in a folder", "[tasks/Light.cpp:30] text", "tasks/Light.cpp", "30"},
        {"a text with another place", "[main.cpp:1] [Light.cpp:2] text", "main.cpp", "1"},
        {"a file with a colon", "[a:b.cpp:7] text", "a:b.cpp", "7"},
        {"nothing behind the place", "[main.cpp:1] ", "main.cpp", "1"},
        {"no place", "text", {}, {}},
        {"a place later on", "text [main.cpp:1] text", {}, {}},
        {"no line", "[main.cpp] text", {}, {}},
        {"an empty line", "[main.cpp:] text", {}, {}},
        {"a line that is no number", "[main.cpp:1x] text", {}, {}},
        {"no end", "[main.cpp:1", {}, {}},
        {"no blank", "[main.cpp:1]text", {}, {}},
        {"an empty text", "", {}, {}},
    });
}

void StandinJournalTest::ARecordNamesItsPlace()
{
    const auto& [text, file, line] = Rows<QByteArray, QByteArray, QByteArray>::Current();
    const JournalSocket journal;
    JournalClient client;
    client.Log(4, text);
    Entry expected = EntryOf("4", "5", text);
    if (!file.isEmpty())
    {
        expected.insert("CODE_FILE", file);
        expected.insert("CODE_LINE", line);
    }
    QCOMPARE(journal.Read(), QList{expected});
}

void StandinJournalTest::ATextCannotForgeAField_data()
{
    Rows<QByteArray, QByteArray>::Add({
        {"a field in the text", "a\nPRIORITY=0", "a\\nPRIORITY=0"},
        {"the end of the text", "a\n\n", "a"},
        {"a wide control character", "a\xc2\x85", "a\\xc2\\x85"},
        {"UTF-8 is text", "caf\xc3\xa9", "caf\xc3\xa9"},
        {"a long text", QByteArray(20'000, 'x'), QByteArray(20'000, 'x')},
    });
}

void StandinJournalTest::ATextCannotForgeAField()
{
    const auto& [text, written] = Rows<QByteArray, QByteArray>::Current();
    const JournalSocket journal;
    JournalClient client;
    client.Log(1, text);
    QCOMPARE(journal.Read(), QList{EntryOf("1", "3", written)});
    client.Log(1, "text", "/a\nMESSAGE=b");
    QCOMPARE(journal.Read().value(0).value("OZNA_ORIGIN"), "/a\\nMESSAGE=b"_ba);
}

void StandinJournalTest::TheLevelIsFiltered()
{
    qputenv(JournalClient::LEVEL_VARIABLE, "4");
    const JournalSocket journal;
    JournalClient client;
    for (const unsigned int level : {1U, 2U, 4U, 5U, 9U})
        client.Log(level, "text");
    QByteArrayList levels;
    for (const Entry& entry : journal.Read())
        levels.append(entry.value("OZNA_LEVEL"));
    QCOMPARE(levels, QByteArrayList({"1", "2", "4"}));
}

void StandinJournalTest::OnlyWhatTheJournalReadsGoesThere_data()
{
    Rows<QByteArray>::Add({
        {"not started by the service manager", {}},
        {"no name", ""},
        {"another device", "device"},
        {"another inode", "inode"},
        {"a name that begins alike", "longer"},
        {"no name of a file", "journal"},
    });
}

// Standard error of a service may be a file, and a service may start processes that write to a pipe.
void StandinJournalTest::OnlyWhatTheJournalReadsGoesThere()
{
    const auto kind = Rows<QByteArray>::Current();
    const JournalSocket journal;
    const LogChannel channel(u"pipe"_s);
    const QMap<QByteArray, QByteArray> names{{"device", JournalClient::StreamName(channel.Writer(), 1)},
                                             {"inode", JournalClient::StreamName(channel.Writer(), 0, 1)},
                                             {"longer", JournalClient::StreamName(channel.Writer()) + '0'}};
    if (!kind.isNull())
        qputenv(STREAM_VARIABLE, names.value(kind, kind));
    {
        const StandardError redirected(channel.Writer());
        LogInterface client(u"/client"_s);
        client.EmitLogString(4, "text", LogSum::ORIGIN);
    }
    qunsetenv(STREAM_VARIABLE);
    QCOMPARE(channel.Read(), "4 /origin text\n"_ba);
    QVERIFY(journal.Read().isEmpty());
}

OZNA_CASE(StandinJournal, StandinJournalTest)
#include "tst_StandinJournal.moc"
