#include "PlayerClient.h"

#include "Wait.h"

#include <QDBusMessage>

using namespace Qt::StringLiterals;

namespace
{

const QString PATH = u"/com/kestrelix/ozna/soundmanager/soundobj"_s;
const QString INTERFACE = u"com.kestrelix.ozna.soundinterface"_s;
constexpr int PATIENCE_MS = 20000; // longer than the daemon's: an end is owed for what is accepted late, too

} // namespace

const QString PlayerClient::SERVICE = u"com.kestrelix.ozna.soundmanager"_s;

PlayerClient::PlayerClient(QDBusConnection bus)
    : m_bus(bus)
{
    const auto listen = [this](const QString& signal, const char* slot) {
        if (!m_bus.connect(SERVICE, PATH, INTERFACE, signal, this, slot))
            qFatal("cannot listen to %s", qPrintable(signal));
    };
    listen(u"PlayFileCompleted"_s, SLOT(OnPlayFileCompleted(QString)));
    listen(u"PlayPlaylistCompleted"_s, SLOT(OnPlayPlaylistCompleted(QString)));
    listen(u"StreamEnabled"_s, SLOT(OnStreamEnabled(bool)));
}

int PlayerClient::Call(const char* method, const QVariantList& values)
{
    QDBusMessage request = QDBusMessage::createMethodCall(SERVICE, PATH, INTERFACE, QString::fromLatin1(method));
    request.setArguments(values);
    const QDBusMessage reply = m_bus.call(request, QDBus::Block, PATIENCE_MS);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return BUS_ERROR;
    return reply.arguments().constFirst().toInt();
}

bool PlayerClient::WaitForSignal(const QString& signal, qsizetype times, int timeout_ms) const
{
    return WaitUntil([&] { return m_signals.count(signal) >= times; }, timeout_ms);
}

void PlayerClient::OnPlayFileCompleted(const QString& file)
{
    m_signals.append(u"PlayFileCompleted "_s + file);
}

void PlayerClient::OnPlayPlaylistCompleted(const QString& playlist)
{
    m_signals.append(u"PlayPlaylistCompleted "_s + playlist);
}

void PlayerClient::OnStreamEnabled(bool enabled)
{
    m_signals.append(enabled ? u"StreamEnabled true"_s : u"StreamEnabled false"_s);
}
