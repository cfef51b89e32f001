#include "OrdinaryUser.h"
#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"
#include "tasks/PlayStream.h"

#include <QFile>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

// A stream's address, with the server that the configuration file names.
class StreamServerTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheServerIsThatOfTheConfiguration_data();
    void TheServerIsThatOfTheConfiguration();
    void WithoutAServerNothingIsAsked_data();
    void WithoutAServerNothingIsAsked();
    void AFileWithoutPermissionIsNotValid();
    void EachRunReadsTheConfigurationAnew();

private:
    void Begin() override { qputenv("OZNA_CONFIG_FILE", QFile::encodeName(Path())); }
    void End() override { qunsetenv("OZNA_CONFIG_FILE"); }

    QString Path() { return Data().Path() + u"/ozna.ini"_s; }
    void Write(const QByteArray& content);
};

void StreamServerTest::Write(const QByteArray& content)
{
    QFile file(Path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

void StreamServerTest::TheServerIsThatOfTheConfiguration_data()
{
    const QByteArray server = "[GENERAL]\nServerIp=10.0.0.5\n";
    Rows<QByteArray, QString, QString>::Add({
        {"an address", server, u"8554/live"_s, u"rtsp://10.0.0.5:8554/live"_s},
        {"a name", "[GENERAL]\nServerIp=radio.local\n", u"8554/live"_s, u"rtsp://radio.local:8554/live"_s},
        {"the address that is the default", "[GENERAL]\nServerIp=127.0.0.1\n", u"8554/live"_s,
         u"rtsp://127.0.0.1:8554/live"_s},
        {"an empty address", "[GENERAL]\nServerIp=\n", u"8554/live"_s, u"rtsp://:8554/live"_s},
        {"other keys and groups around", "[AUDIO]\nServerIp=1.1.1.1\n[GENERAL]\nName=x\nServerIp=10.0.0.5\n",
         u"8554/live"_s, u"rtsp://10.0.0.5:8554/live"_s},
        {"no port and path", server, u""_s, u"rtsp://10.0.0.5:"_s},
        {"a path with a query", server, u"8554/a/b?c=1&d=%20"_s, u"rtsp://10.0.0.5:8554/a/b?c=1&d=%20"_s},
        {"placeholders in the path", server, u"%1%2"_s, u"rtsp://10.0.0.5:%1%2"_s},
        {"placeholders in the address", "[GENERAL]\nServerIp=%2%1\n", u"8554/live"_s, u"rtsp://%2%1:8554/live"_s},
    });
}

void StreamServerTest::TheServerIsThatOfTheConfiguration()
{
    const auto& [content, portAndPath, uri] = Rows<QByteArray, QString, QString>::Current();
    Write(content);
    PlayStream task(portAndPath, u"-1"_s);
    LogRecorder::Clear();
    QVERIFY(task.Run());
    EXPECT_REQUESTS(Bus(), {u"sound.PlayStream su %1 0"_s.arg(uri)});
    EXPECT_LOG(9, {"5 [tasks/PlayStream.cpp] PlayStream setup done: uri=" + uri.toUtf8(),
                   "9 [tasks/PlayStream.cpp] TASK START REQUESTED | PlayStream: " + uri.toUtf8() + "|-1"});
}

void StreamServerTest::WithoutAServerNothingIsAsked_data()
{
    const QByteArray notValid = "config not valid";
    const QByteArray missing = "value missing";
    Rows<bool, QByteArray, QByteArray>::Add({
        {"no file", false, {}, notValid},
        {"a section without its end", true, "[GENERAL\nServerIp=10.0.0.5\n", notValid},
        {"an empty file", true, "", missing},
        {"an empty group", true, "[GENERAL]\n", missing},
        {"another key", true, "[GENERAL]\nServer=10.0.0.5\n", missing},
        {"another group", true, "[AUDIO]\nServerIp=10.0.0.5\n", missing},
    });
}

void StreamServerTest::WithoutAServerNothingIsAsked()
{
    const auto& [exists, content, reason] = Rows<bool, QByteArray, QByteArray>::Current();
    if (exists)
        Write(content);
    {
        // Not even the volume is set.
        PlayStream task(u"8554/live"_s, u"70"_s);
        LogRecorder::Clear();
        QVERIFY(!task.Run());
        QVERIFY(!task.IsRunning());
    }
    EXPECT_LOG(9,
               {"1 [tasks/PlayStream.cpp] PlayStream setup error: impossible to retrieve server ip (" + reason + ")"});
    EXPECT_REQUESTS(Bus(), {});
}

void StreamServerTest::AFileWithoutPermissionIsNotValid()
{
    Write("[GENERAL]\nServerIp=10.0.0.5\n");
    QCOMPARE(::chmod(QFile::encodeName(Data().Path()).constData(), 0755), 0);
    QCOMPARE(::chmod(QFile::encodeName(Path()).constData(), 0), 0);
    const OrdinaryUser user;
    PlayStream task(u"8554/live"_s, u"70"_s);
    QVERIFY(!task.Run());
    EXPECT_LOG(
        2, {"1 [tasks/PlayStream.cpp] PlayStream setup error: impossible to retrieve server ip (config not valid)"});
}

void StreamServerTest::EachRunReadsTheConfigurationAnew()
{
    PlayStream task(u"8554/live"_s, u"-1"_s);
    QVERIFY(!task.Run());
    LogRecorder::Clear();
    for (const QByteArray server : {"10.0.0.5", "10.0.0.66"})
    {
        Write("[GENERAL]\nServerIp=" + server + "\n");
        QVERIFY(task.Run());
        EXPECT_REQUESTS(Bus(), {u"sound.PlayStream su rtsp://%1:8554/live 0"_s.arg(QLatin1String(server))});
    }
}

OZNA_CASE(StreamServer, StreamServerTest)
#include "tst_StreamServer.moc"
