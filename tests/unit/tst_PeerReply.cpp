#include "Suite.h"
#include "UnitTest.h"
#include "peers/PeerReply.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <climits>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{

QDBusMessage Call()
{
    return QDBusMessage::createMethodCall(u"a.b"_s, u"/a"_s, u"a.b"_s, u"M"_s);
}

} // namespace

class PeerReplyTest final : public UnitTest
{
    Q_OBJECT
private Q_SLOTS:
    void TheStatusIsTheFirstValueAsAnInt_data();
    void TheStatusIsTheFirstValueAsAnInt();
    void FurtherValuesAreNotLookedAt();
    void AReplyWithoutValuesIsAccepted();
    void AnErrorMessageIsABusError();
    void AnErrorMessagesValueIsReadLikeAReplys();
    void AReplyIsMadeOfAStatusOrAnError();
    void TheSenderIsWhoAnswered();
    void AnAnswerKeepsItsTurn();
};

void PeerReplyTest::TheStatusIsTheFirstValueAsAnInt_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("status");
    const auto row = [](const char* name, const QVariant& value, int status) {
        QTest::newRow(name) << QVariant::fromValue(value) << status;
    };
    constexpr int GREATEST = std::numeric_limits<int>::max();
    constexpr int LEAST = std::numeric_limits<int>::min();
    row("int 0 is accepted", 0, 0);
    row("int 5", 5, 5);
    row("int -3", -3, -3);
    row("the greatest int", GREATEST, GREATEST);
    row("the least int", LEAST, LEAST);
    row("unsigned int", 7U, 7);
    row("a byte", QVariant::fromValue(uchar(200)), 200);
    row("a short", QVariant::fromValue(short(-2)), -2);
    row("an unsigned short", QVariant::fromValue(ushort(65535)), 65535);
    row("a long long", qlonglong(12), 12);
    row("an unsigned long long", qulonglong(13), 13);
    row("a long long that no int holds", (Q_INT64_C(1) << 33) + 5, INT_MAX);
    row("an unsigned long long that no int holds", (Q_UINT64_C(1) << 33) + 5, INT_MAX);
    row("an unsigned int that no int holds", 4294967295U, INT_MAX);
    row("true counts as 1", true, 1);
    row("false counts as 0", false, 0);
    row("a whole double", 3.0, 3);
    row("a negative double", -3.0, -3);
    row("a double nearer to 1 than to 0", 0.6, 1);
    row("a half", 0.5, 1);
    row("a double nearer to 0 than to 1", 0.4, 0);
    row("a double nearer to -1 than to 0", -0.6, -1);
    row("a negative half", -0.5, -1);
    row("a double nearer to 0 than to -1", -0.4, 0);
    row("a double that no int holds", 1e300, INT_MAX);
    row("a negative double that no int holds", -1e300, INT_MIN);
    row("a double just beyond the ints", 2147483648.0, INT_MAX);
    row("an infinite double", std::numeric_limits<double>::infinity(), INT_MAX);
    row("a double that is no number", std::numeric_limits<double>::quiet_NaN(), 0);
    row("a number as text", u"12"_s, 12);
    row("a negative number as text", u"-12"_s, -12);
    row("a text", u"failed"_s, 0);
    row("an empty text", u""_s, 0);
    row("a number as text that no int holds", u"99999999999"_s, INT_MAX);
    row("a list of texts", QStringList{u"5"_s, u"6"_s}, 0);
    row("bytes that are no number", QByteArray("\x05\x06"), 0);
    row("an object path", QVariant::fromValue(QDBusObjectPath(u"/a"_s)), 0);
    row("a wrapped value", QVariant::fromValue(QDBusVariant(5)), 0);
    row("a marshalled value that holds nothing", QVariant::fromValue(QDBusArgument()), 0);
    row("nothing", QVariant(), 0);
}

void PeerReplyTest::TheStatusIsTheFirstValueAsAnInt()
{
    QFETCH(QVariant, value);
    QFETCH(int, status);
    const PeerReply reply(Call().createReply(value));
    QCOMPARE(reply.Status(), status);
    QVERIFY(!reply.IsBusError());
    QCOMPARE(reply.IsAccepted(), status == 0);
    QCOMPARE(reply.ErrorMessage(), QString());
}

void PeerReplyTest::FurtherValuesAreNotLookedAt()
{
    QCOMPARE(PeerReply(Call().createReply(QVariantList{0, 5})).Status(), 0);
    QCOMPARE(PeerReply(Call().createReply(QVariantList{u"x"_s, 5})).Status(), 0);
    QCOMPARE(PeerReply(Call().createReply(QVariantList{4, u"x"_s, true})).Status(), 4);
}

void PeerReplyTest::AReplyWithoutValuesIsAccepted()
{
    const PeerReply reply(Call().createReply());
    QCOMPARE(reply.Status(), 0);
    QVERIFY(reply.IsAccepted());
}

void PeerReplyTest::AnErrorMessageIsABusError()
{
    const PeerReply reply(Call().createErrorReply(QDBusError::NoReply, u"Did not receive a reply"_s));
    QVERIFY(reply.IsBusError());
    QCOMPARE(reply.ErrorMessage(), u"Did not receive a reply"_s);
    QCOMPARE(reply.Status(), 0);
    QVERIFY(!reply.IsAccepted());
}

void PeerReplyTest::AnErrorMessagesValueIsReadLikeAReplys()
{
    QDBusMessage message = Call().createErrorReply(u"a.b.Error"_s, u"text"_s);
    message.setArguments({6});
    const PeerReply reply(message);
    QVERIFY(reply.IsBusError());
    QCOMPARE(reply.Status(), 6);
    QVERIFY(!reply.IsAccepted());
}

void PeerReplyTest::AReplyIsMadeOfAStatusOrAnError()
{
    QVERIFY(PeerReply(0).IsAccepted());
    QVERIFY(!PeerReply(1).IsAccepted());
    QVERIFY(!PeerReply(-1).IsAccepted());
    QCOMPARE(PeerReply(-1).Status(), -1);
    const PeerReply failed = PeerReply::Failed(u"gone"_s);
    QVERIFY(failed.IsBusError());
    QVERIFY(!failed.IsAccepted());
    QCOMPARE(failed.ErrorMessage(), u"gone"_s);
    QCOMPARE(failed.Status(), 0);
    // Also an error without a text is one.
    QVERIFY(PeerReply::Failed({}).IsBusError());
}

void PeerReplyTest::TheSenderIsWhoAnswered()
{
    const auto from = [](const QString& name) { return QDBusMessage::createMethodCall(name, u"/"_s, {}, u"x"_s); };
    QCOMPARE(PeerReply(from(u":1.5"_s)).Sender(), u":1.5"_s);
    QCOMPARE(PeerReply(from(u"org.freedesktop.DBus"_s)).Sender(), QString());
    QCOMPARE(PeerReply(from({})).Sender(), QString());
    QCOMPARE(PeerReply(0).Sender(), QString());
    QVERIFY(PeerReply(0).Turn() == nullptr);
}

void PeerReplyTest::AnAnswerKeepsItsTurn()
{
    const QDBusPendingCall call = QDBusPendingCall::fromError(QDBusError(QDBusError::NoReply, u"late"_s));
    const auto turn = std::make_shared<const QDBusPendingCallWatcher>(call);
    QCOMPARE(PeerReply(call.reply(), turn).Turn(), turn);
    QVERIFY(PeerReply(call.reply()).Turn() == nullptr);
}

OZNA_CASE(PeerReply, PeerReplyTest)
#include "tst_PeerReply.moc"
