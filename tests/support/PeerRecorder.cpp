#include "PeerRecorder.h"

#include "TextDiff.h"
#include "peers/PeerCall.h"

#include <QDBusAbstractInterface>
#include <QDBusMetaType>

namespace
{

QString Signature(const QVariant& argument)
{
    const char* const signature = QDBusMetaType::typeToSignature(argument.metaType());
    return QString::fromLatin1(signature != nullptr ? signature : "?");
}

QString Value(const QVariant& argument)
{
    // A byte is a number on the bus, and a character to the library.
    const bool isByte = argument.metaType() == QMetaType::fromType<uchar>();
    return isByte ? QString::number(argument.toUInt()) : argument.toString();
}

} // namespace

QString PeerRequest::Shown() const
{
    QString signature;
    QString values;
    for (const QVariant& argument : arguments)
    {
        signature += Signature(argument);
        values += u' ' + Value(argument);
    }
    const QString peer = service.section(u'.', -1).remove(QStringLiteral("manager"));
    return QStringLiteral("%1.%2 %3%4")
        .arg(peer, method, signature.isEmpty() ? QStringLiteral("-") : signature, values);
}

PeerRecorder::PeerRecorder()
{
    PeerCall::SetTransport([this](QDBusAbstractInterface* proxy, const QString& method, const QVariantList& arguments) {
        PeerRequest request{{}, {}, {}, method, arguments, 0};
        if (proxy != nullptr)
        {
            request.service = proxy->service();
            request.path = proxy->path();
            request.interface = proxy->interface();
            request.timeout_ms = proxy->timeout();
        }
        return Record(request);
    });
}

PeerRecorder::~PeerRecorder()
{
    PeerCall::SetTransport({});
}

void PeerRecorder::Answer(const char* method, int status)
{
    Answer(method, [status](const PeerRequest&) { return PeerReply(status); });
}

void PeerRecorder::AnswerBusError(const char* method, const QString& message)
{
    Answer(method, [message](const PeerRequest&) { return PeerReply::Failed(message); });
}

void PeerRecorder::Answer(const char* method, Answerer answerer)
{
    m_answerers.insert(QLatin1String(method), std::move(answerer));
}

QByteArray PeerRecorder::Compare(const QStringList& expected)
{
    QStringList found;
    for (const PeerRequest& request : m_requests)
        found.append(request.Shown());
    Clear();
    return TextDiff(expected, found, "request");
}

PeerReply PeerRecorder::Record(const PeerRequest& request)
{
    m_requests.append(request);
    const Answerer answerer = m_answerers.value(request.method);
    return answerer ? answerer(request) : PeerReply(0);
}
