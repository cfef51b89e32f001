#include "CameraBehaviour.h"

#include <algorithm>
#include <chrono>

namespace
{

using Seconds = std::chrono::seconds;
constexpr Seconds EXPOSURE(1);
constexpr int MIN_INTERVAL_S = 1;
constexpr int MAX_INTERVAL_S = 24 * 60 * 60;
constexpr int STATUS_OK = 0;
const QString PHOTO_TAKEN = QStringLiteral("PhotoTaken");
const QString STREAM_STOPPED = QStringLiteral("PhotoStreamStopped");
const QString IMAGE_PATH = QStringLiteral("/opt/ozna/data/photo-%1.jpg");

} // namespace

CameraBehaviour::CameraBehaviour(Send send)
    : m_send(std::move(send))
{
    m_series.setTimerType(Qt::PreciseTimer);
    connect(&m_series, &QTimer::timeout, this, [this] {
        ++m_seriesCount;
        TakePhoto();
    });
}

CameraBehaviour::~CameraBehaviour() = default;

void CameraBehaviour::TakeOne(const Call& /*call*/)
{
    QTimer::singleShot(EXPOSURE, Qt::PreciseTimer, this, &CameraBehaviour::TakePhoto);
}

void CameraBehaviour::StartSeries(const Call& call)
{
    m_seriesCount = 0;
    m_series.start(Seconds(std::clamp(call.arguments.value(0).toInt(), MIN_INTERVAL_S, MAX_INTERVAL_S)));
}

void CameraBehaviour::StopSeries(const Call& /*call*/)
{
    if (!m_series.isActive())
        return;
    m_series.stop();
    m_send(STREAM_STOPPED, {m_seriesCount});
}

void CameraBehaviour::TakePhoto()
{
    m_send(PHOTO_TAKEN, {STATUS_OK, IMAGE_PATH.arg(++m_totalCount)});
}
