#include "PeerAnswers.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QTest>
#include <QVariantList>

using namespace Qt::StringLiterals;

namespace
{

QDBusMessage Call()
{
    return QDBusMessage::createMethodCall(u"a.b"_s, u"/a"_s, u"a.b"_s, u"M"_s);
}

PeerAnswer Reply(const char* name, const QVariantList& values, int status)
{
    return {name, PeerReply(Call().createReply(values)), false, {}, status};
}

// On the bus an error's text is its first value.
PeerAnswer Error(const char* name, const QString& text, int status)
{
    QDBusMessage message = Call().createErrorReply(QDBusError::ServiceUnknown, text);
    message.setArguments({text});
    return {name, PeerReply(message), true, text.toUtf8(), status};
}

} // namespace

Outcome PeerAnswer::TakenAs(Judged judged) const
{
    if (judged == Judged::NEVER)
        return Outcome::ACCEPTED;
    if (judged == Judged::WHOLE && isBusError)
        return Outcome::BUS_ERROR;
    return status == 0 ? Outcome::ACCEPTED : Outcome::REFUSED;
}

QStringList PeerAnswer::Filled(const QStringList& records) const
{
    return Answered(records, QString::fromUtf8(error), status);
}

const QList<PeerAnswer>& PeerAnswers::All()
{
    static const QList<PeerAnswer> answers{
        Reply("accepted", {0}, 0),
        Reply("refused with 5", {5}, 5),
        Reply("refused with -3", {-3}, -3),
        Reply("accepted, with more values", {0, 5, u"x"_s}, 0),
        Reply("refused with an unsigned 7", {7U}, 7),
        Reply("refused with true", {true}, 1),
        Reply("refused with the double 3", {3.0}, 3),
        Reply("refused with a number as text", {u"12"_s}, 12),
        Reply("a text that is no number is no refusal", {u"failed"_s}, 0),
        Reply("nothing is no refusal", {}, 0),
        Error("bus error", u"Did not receive a reply"_s, 0),
        Error("bus error without a text", u""_s, 0),
        Error("bus error whose text is a number", u"6"_s, 6),
    };
    return answers;
}

void PeerAnswers::AddRows()
{
    QTest::addColumn<PeerAnswer>("answer");
    for (const PeerAnswer& answer : All())
        QTest::newRow(answer.name) << answer;
}
