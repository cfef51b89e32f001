#include "Rows.h"
#include "Suite.h"
#include "UnitTest.h"
#include "peers/PeerReply.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusServer>
#include <QDBusVirtualObject>
#include <QSignalSpy>
#include <QUuid>

#include <climits>

using namespace Qt::StringLiterals;

namespace
{

constexpr const char* CONNECTION = "client";

// Answers every call with what it was told, to the letter.
class Answerer final : public QDBusVirtualObject
{
public:
    [[nodiscard]] QString introspect(const QString& path) const override
    {
        Q_UNUSED(path)
        return {};
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        return connection.send(message.createReply(m_answer));
    }

    QVariantList m_answer;
};

QDBusArgument Structure(int first, const QString& second)
{
    QDBusArgument argument;
    argument.beginStructure();
    argument << first << second;
    argument.endStructure();
    return argument;
}

QDBusArgument Array(const QList<int>& values)
{
    QDBusArgument argument;
    argument.beginArray(QMetaType::fromType<int>());
    for (const int value : values)
        argument << value;
    argument.endArray();
    return argument;
}

QDBusArgument Map(const QMap<QString, int>& values)
{
    QDBusArgument argument;
    argument.beginMap(QMetaType::fromType<QString>(), QMetaType::fromType<int>());
    for (auto entry = values.begin(); entry != values.end(); ++entry)
    {
        argument.beginMapEntry();
        argument << entry.key() << entry.value();
        argument.endMapEntry();
    }
    argument.endMap();
    return argument;
}

} // namespace

// Values as they look after a real trip: a connection between two ends of this process, without a bus.
class MarshalledReplyTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void AValueThatTravelledGivesItsStatus_data();
    void AValueThatTravelledGivesItsStatus();

private:
    void Begin() override;
    void End() override;

    std::unique_ptr<QDBusServer> m_server;
    Answerer m_answerer;
};

void MarshalledReplyTest::Begin()
{
    // An abstract address leaves no file behind, whenever the server's thread comes to close it.
    m_server =
        std::make_unique<QDBusServer>(u"unix:abstract=ozna-test-"_s + QUuid::createUuid().toString(QUuid::Id128));
    m_server->setAnonymousAuthenticationAllowed(true);
    connect(m_server.get(), &QDBusServer::newConnection, this,
            [this](QDBusConnection connection) { connection.registerVirtualObject(u"/object"_s, &m_answerer); });
    QVERIFY(m_server->isConnected());
    const QSignalSpy connected(m_server.get(), &QDBusServer::newConnection);
    QVERIFY(QDBusConnection::connectToPeer(m_server->address(), QLatin1String(CONNECTION)).isConnected());
    QTRY_COMPARE(connected.size(), 1);
}

void MarshalledReplyTest::End()
{
    QDBusConnection::disconnectFromPeer(QLatin1String(CONNECTION));
    m_server.reset();
}

void MarshalledReplyTest::AValueThatTravelledGivesItsStatus_data()
{
    Rows<QVariantList, QByteArray, int>::Add({
        {"an int", {5}, "i", 5},
        {"an unsigned int", {6U}, "u", 6},
        {"a double", {7.0}, "d", 7},
        {"a double that no int holds", {1e300}, "d", INT_MAX},
        {"a bool", {true}, "b", 1},
        {"a number as text", {u"12"_s}, "s", 12},
        {"a byte", {QVariant::fromValue(uchar(8))}, "y", 8},
        {"no value", {}, "", 0},
        {"a structure that begins with an int", {QVariant::fromValue(Structure(5, u"x"_s))}, "(is)", 0},
        {"an array of ints", {QVariant::fromValue(Array({5, 6}))}, "ai", 0},
        {"an empty array", {QVariant::fromValue(Array({}))}, "ai", 0},
        {"a map", {QVariant::fromValue(Map({{u"a"_s, 5}}))}, "a{si}", 0},
        {"a structure before an int", {QVariant::fromValue(Structure(5, u"x"_s)), 9}, "(is)i", 0},
        {"a wrapped structure", {QVariant::fromValue(QDBusVariant(QVariant::fromValue(Structure(5, u"x"_s))))}, "v", 0},
    });
}

void MarshalledReplyTest::AValueThatTravelledGivesItsStatus()
{
    const auto& [answer, signature, status] = Rows<QVariantList, QByteArray, int>::Current();
    m_answerer.m_answer = answer;
    const QDBusMessage request = QDBusMessage::createMethodCall(QString(), u"/object"_s, u"a.b"_s, u"Ask"_s);
    const QDBusPendingCall call = QDBusConnection(QLatin1String(CONNECTION)).asyncCall(request);
    QTRY_VERIFY(call.isFinished());
    const QDBusMessage message = call.reply();
    QCOMPARE(message.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(message.signature().toLatin1(), signature);
    const PeerReply reply(message);
    QVERIFY(!reply.IsBusError());
    QCOMPARE(reply.Status(), status);
}

OZNA_CASE(MarshalledReply, MarshalledReplyTest)
#include "tst_MarshalledReply.moc"
