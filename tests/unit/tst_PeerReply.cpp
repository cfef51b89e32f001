#include "Rows.h"
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
    constexpr int GREATEST = std::numeric_limits<int>::max();
    constexpr int LEAST = std::numeric_limits<int>::min();
    Rows<QVariant, int>::Add({
        {"int 0 is accepted", 0, 0},
        {"int 5", 5, 5},
        {"int -3", -3, -3},
        {"the greatest int", GREATEST, GREATEST},
        {"the least int", LEAST, LEAST},
        {"unsigned int", 7U, 7},
        {"a byte", QVariant::fromValue(uchar(200)), 200},
        {"a short", QVariant::fromValue(short(-2)), -2},
        {"an unsigned short", QVariant::fromValue(ushort(65535)), 65535},
        {"a long long", qlonglong(12), 12},
        {"an unsigned long long", qulonglong(13), 13},
        {"a long long that no int holds", (Q_INT64_C(1) << 33) + 5, INT_MAX},
        {"an unsigned long long that no int holds", (Q_UINT64_C(1) << 33) + 5, INT_MAX},
        {"an unsigned int that no int holds", 4294967295U, INT_MAX},
        {"true counts as 1", true, 1},
        {"false counts as 0", false, 0},
        {"a whole double", 3.0, 3},
        {"a negative double", -3.0, -3},
        {"a double nearer to 1 than to 0", 0.6, 1},
        {"a half", 0.5, 1},
        {"a double nearer to 0 than to 1", 0.4, 0},
        {"a double nearer to -1 than to 0", -0.6, -1},
        {"a negative half", -0.5, -1},
        {"a double nearer to 0 than to -1", -0.4, 0},
        {"a double that no int holds", 1e300, INT_MAX},
        {"a negative double that no int holds", -1e300, INT_MIN},
        {"a double just beyond the ints", 2147483648.0, INT_MAX},
        {"an infinite double", std::numeric_limits<double>::infinity(), INT_MAX},
        {"a double that is no number", std::numeric_limits<double>::quiet_NaN(), 0},
        {"a number as text", u"12"_s, 12},
        {"a negative number as text", u"-12"_s, -12},
        {"a text", u"failed"_s, 0},
        {"an empty text", u""_s, 0},
        {"a number as text that no int holds", u"99999999999"_s, INT_MAX},
        {"a list of texts", QStringList{u"5"_s, u"6"_s}, 0},
        {"bytes that are no number", QByteArray("\x05\x06"), 0},
        {"an object path", QVariant::fromValue(QDBusObjectPath(u"/a"_s)), 0},
        {"a wrapped value", QVariant::fromValue(QDBusVariant(5)), 0},
        {"a marshalled value that holds nothing", QVariant::fromValue(QDBusArgument()), 0},
        {"nothing", {}, 0},
    });
}

void PeerReplyTest::TheStatusIsTheFirstValueAsAnInt()
{
    const auto& [value, status] = Rows<QVariant, int>::Current();
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
