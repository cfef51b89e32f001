#include "Photo.h"

#include "Log.h"
#include "peers/PhotoManager.h"
#include "text/Parameter.h"
#include "text/StringUtils.h"

#include <QTimerEvent>

namespace
{

constexpr int DEFAULT_INTERVAL_S = 0;
constexpr int SINGLE_PHOTO = 1;
constexpr char SEPARATOR = ',';
constexpr int FIELDS = 2;

// How long stops that fail may keep the loop from everything else.
constexpr int LONGEST_RUSH_MS = 500;

} // namespace

Photo::Photo(const QString& parameter)
    : PunctualTask(TASK_RECORD_PHOTO, {})
    , m_interval_s(DEFAULT_INTERVAL_S)
    , m_numPhoto(SINGLE_PHOTO)
{
    if (!parameter.isEmpty())
        Parse(parameter);
    const auto seePhoto = [](PhotoPlace& place, int status, const QString& imagePath) {
        static_cast<Photo&>(place).OnPhotoTaken(status, imagePath);
    };
    if (!PhotoWatch::Join(*this, seePhoto))
        OZNA_LOG(LEVEL_WARNING, "Can't wait for the photos of %s", qPrintable(GetName()));
    OZNA_LOG(LEVEL_NORMAL, "TASK CREATED | Photo: interval=%d s, numPhoto=%d", m_interval_s, m_numPhoto);
}

Photo::~Photo()
{
    PhotoWatch::Leave(*this);
}

void Photo::Parse(const QString& parameter)
{
    const QString shown = parameter.left(Log::RECORD_SIZE);
    try
    {
        const QStringList fields = StringUtils::FirstTokens(parameter, SEPARATOR, FIELDS);
        m_interval_s = Parameter::ToInt(fields.value(0), DEFAULT_INTERVAL_S, [&] {
            NoteWarning(0, OZNA_TELL(LEVEL_WARNING, "Can't parse Photo interval from parameters: '%s'. Using 0.",
                                     qPrintable(shown)));
        });
        m_numPhoto = Parameter::ToInt(fields.value(1), SINGLE_PHOTO, [&] {
            NoteWarning(1, OZNA_TELL(LEVEL_WARNING, "Can't parse Photo number from parameters: '%s'. Using 1.",
                                     qPrintable(shown)));
        });
    }
    catch (const std::exception&)
    {
        NoteWarning(0, OZNA_TELL(LEVEL_WARNING, "Error parsing parameters: using defaults (interval=0 s, numPhoto=1)"));
        m_interval_s = DEFAULT_INTERVAL_S;
        m_numPhoto = SINGLE_PHOTO;
    }
}

bool Photo::Run()
{
    m_photoCount = 0;
    m_streaming = false;
    BeginWork();
    return m_numPhoto == SINGLE_PHOTO ? TakeSinglePhoto() : TakeMultiplePhoto();
}

bool Photo::TakeSinglePhoto()
{
    OZNA_LOG(LEVEL_TRACE, "Taking single photo");
    const PeerReply reply = PhotoManager::TakePhoto();
    HandOver(PhotoManager::Owner(), reply);
    return reply.Report([](const char* error) { OZNA_LOG(LEVEL_ERROR, "TakePhoto() request error: %s\n", error); },
                        [](int status) { OZNA_LOG(LEVEL_ERROR, "TakePhoto error: %d\n", status); },
                        [] { OZNA_LOG(LEVEL_NORMAL, "TASK REQUESTED | Photo"); });
}

bool Photo::TakeMultiplePhoto()
{
    OZNA_LOG(LEVEL_TRACE, "Taking multiple photo");
    const PeerReply reply = PhotoManager::TakePhotoStream(m_interval_s);
    HandOver(PhotoManager::Owner(), reply);
    m_streaming = reply.Report(
        [&](const char* error) {
            OZNA_LOG(LEVEL_NORMAL, "TakePhotoStream(%d) request error: %s\n", m_interval_s, error);
        },
        [&](int status) { OZNA_LOG(LEVEL_NORMAL, "TakePhotoStream(%d) request error (%d)", m_interval_s, status); },
        [&] { OZNA_LOG(LEVEL_NORMAL, "TASK REQUESTED | Photo: interval=%d s, num=%d, ", m_interval_s, m_numPhoto); });
    return m_streaming;
}

QString Photo::GetSubject() const
{
    return QStringLiteral("interval=%1 s, num=%2").arg(m_interval_s).arg(m_numPhoto);
}

void Photo::OnPhotoTaken(int status, const QString& imagePath)
{
    Q_UNUSED(status)
    Q_UNUSED(imagePath)
    OZNA_LOG(LEVEL_TRACE, ">>> Photo taken");
    // A series that ended with its peer has no part in another's photos.
    if (!m_streaming || !IsRunning())
    {
        m_running = false;
        return;
    }
    ++m_photoCount;
    OZNA_LOG(LEVEL_TRACE, ">>> Total photo: %d", static_cast<int>(m_photoCount));
    if (m_photoCount < static_cast<unsigned int>(m_numPhoto))
        return;
    if (IsRushed())
        m_asksLater = true;
    else
        StopSeries();
}

// A stop that fails leaves the series running: the next photo asks again.
void Photo::StopSeries()
{
    if (!m_rush.isValid())
        m_rush.start();
    m_asksLater = false;
    const bool stopped = PhotoManager::StopPhotoStream().Report(
        [](const char* error) { OZNA_LOG(LEVEL_NORMAL, "StopPhotoStream request error: %s\n", error); },
        [](int status) { OZNA_LOG(LEVEL_ERROR, "StopPhotoStream error: %d\n", status); },
        [&] { OZNA_LOG(LEVEL_NORMAL, "TASK COMPLETED | Photo: interval=%d s, num=%d, ", m_interval_s, m_numPhoto); });
    if (stopped)
    {
        m_streaming = false;
        m_running = false;
        m_rush.invalidate();
    }
    else
        // Timers have their turn when no signal waits any more, and not before.
        m_rest.start(0, this);
}

void Photo::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_rest.timerId())
        return;
    m_rest.stop();
    m_rush.invalidate();
    if (m_asksLater && m_streaming)
        StopSeries();
}

bool Photo::IsRushed() const
{
    return m_rush.isValid() && m_rush.hasExpired(LONGEST_RUSH_MS);
}
