#include "Device.h"

#include "Scheduler.h"

#include <PhotoManagerProxy.h>
#include <SoundManagerProxy.h>

#include <QDBusMetaType>
#include <QFile>

#include <limits>

using namespace Qt::StringLiterals;

namespace
{

constexpr qint64 MS_PER_S = 1000;
constexpr qint64 MESSAGE_S = 20;
constexpr qint64 FIRST_PHOTO_S = 1;
constexpr int PHOTOS = 3; // of a series
constexpr qint64 MORNING_S = 926;
constexpr qint64 CHRISTMAS_S = 522;

QString Text(const PeerRequest& request)
{
    QString signature;
    QString values;
    for (const QVariant& value : request.arguments)
    {
        const bool isByte = value.metaType() == QMetaType::fromType<uchar>();
        signature += QLatin1String(QDBusMetaType::typeToSignature(value.metaType()));
        values += u' ' + (isByte ? QString::number(value.toUInt()) : value.toString());
    }
    const QString peer = request.interface.section(u'.', -1).chopped(9); // "interface"
    return u"%1.%2 %3%4"_s.arg(peer, request.method, signature.isEmpty() ? u"-"_s : signature, values);
}

void PhotoTaken()
{
    Q_EMIT Scheduler::m_photoManProxy->PhotoTaken(0, u"/photo.jpg"_s);
}

} // namespace

Device::Device(PeerRecorder& bus, std::function<qint64()> now_ms)
    : m_bus(bus)
    , m_now_ms(std::move(now_ms))
{
    for (const char* method :
         {"DisableLan",   "EnableCamera",    "EnableLan",           "PlayAux",         "PlayFile",   "PlayPlaylist",
          "PlayRadioFm",  "PlayStream",      "RadioFmSetFrequency", "SetAmplifiers",   "SetEnabled", "SetFreq",
          "SetIntensity", "SetMasterVolume", "SetPlayerVolume",     "StopPhotoStream", "StopPlay",   "Switch",
          "TakePhoto",    "TakePhotoStream"})
        m_bus.Answer(method, [this](const PeerRequest& request) { return Receive(request); });
}

PeerReply Device::Receive(const PeerRequest& request)
{
    m_requests.append({m_now_ms(), Text(request)});
    const QString& method = request.method;
    if (method == QLatin1String("PlayFile"))
        Later(MESSAGE_S * MS_PER_S, [] { Q_EMIT Scheduler::m_soundManProxy->PlayFileCompleted({}); });
    else if (method == QLatin1String("PlayPlaylist"))
        Later((request.arguments[0] == QLatin1String("morning") ? MORNING_S : CHRISTMAS_S) * MS_PER_S,
              [] { Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted({}); });
    else if (method == QLatin1String("TakePhoto"))
        Later(FIRST_PHOTO_S * MS_PER_S, PhotoTaken);
    else if (method == QLatin1String("TakePhotoStream"))
    {
        for (int i = 0; i < PHOTOS; ++i)
            Later((FIRST_PHOTO_S + i * request.arguments[0].toInt()) * MS_PER_S, PhotoTaken);
    }
    else if (method == QLatin1String("StopPlay"))
        Stop(request.arguments[0].toString());
    return PeerReply(0);
}

void Device::Stop(const QString& source)
{
    if (source == QLatin1String("playlist"))
        Later(0, [] { Q_EMIT Scheduler::m_soundManProxy->PlayPlaylistCompleted({}); });
    else if (source == QLatin1String("stream"))
        Later(0, [] { Q_EMIT Scheduler::m_soundManProxy->StreamEnabled(false); });
}

void Device::Later(qint64 delay_ms, Signal signal)
{
    m_signals.insert(m_now_ms() + delay_ms, std::move(signal));
}

void Device::Play()
{
    while (Next_ms() <= m_now_ms())
    {
        const Signal signal = m_signals.first();
        m_signals.erase(m_signals.begin());
        signal();
    }
}

qint64 Device::Next_ms() const
{
    return m_signals.isEmpty() ? std::numeric_limits<qint64>::max() : m_signals.firstKey();
}
