#include "SharedValues.h"

#include <QHash>

namespace
{

constexpr size_t TEXTS = 4096;
constexpr size_t LISTS = 256;

SharedValues* m_current = nullptr;

size_t Place(const QString& text, size_t places)
{
    return qHash(text) % places;
}

} // namespace

SharedValues::SharedValues()
    : m_texts(TEXTS)
    , m_tracks(LISTS)
{
    m_current = this;
}

SharedValues::~SharedValues()
{
    m_current = nullptr;
}

QString SharedValues::Of(const QString& text)
{
    if (m_current == nullptr || text.isEmpty())
        return text;
    QString& earlier = m_current->m_texts[Place(text, TEXTS)];
    return earlier == text ? earlier : (earlier = text);
}

SharedValues::Tracks SharedValues::Of(const TrackList& tracks)
{
    if (m_current == nullptr || tracks.IsEmpty())
        return std::make_shared<const TrackList>(tracks);
    Tracks& earlier = m_current->m_tracks[Place(tracks.Tracks().front().file, LISTS)];
    if (earlier == nullptr || *earlier != tracks)
        earlier = std::make_shared<const TrackList>(tracks);
    return earlier;
}
