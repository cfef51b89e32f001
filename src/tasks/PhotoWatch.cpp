#include "PhotoWatch.h"

#include "peers/PhotoManager.h"

#include <PhotoManagerProxy.h>

namespace
{

// What further tasks join; null where there is none.
PhotoWatch* m_current = nullptr;

} // namespace

PhotoWatch::PhotoWatch(const PhotoManagerProxy* photos, Handler handler)
    : m_photos(photos)
    , m_handler(handler)
    , m_connection(connect(photos, &PhotoManagerProxy::PhotoTaken, this, &PhotoWatch::OnPhotoTaken))
{
}

PhotoWatch::~PhotoWatch()
{
    if (m_current == this)
        m_current = nullptr;
}

// Tests and tools make the proxies anew, and tasks of the old ones may still be there.
bool PhotoWatch::IsOf(const PhotoManagerProxy* photos) const
{
    return m_connection && m_photos == photos;
}

bool PhotoWatch::Join(PhotoPlace& place, Handler handler)
{
    const PhotoManagerProxy* const photos = PhotoManager::Signals();
    if (m_current == nullptr || !m_current->IsOf(photos))
    {
        auto* const watch = new PhotoWatch(photos, handler);
        if (!watch->IsOf(photos))
        {
            delete watch;
            return false;
        }
        m_current = watch;
    }
    place.previous = m_current->previous;
    place.next = m_current;
    place.previous->next = &place;
    m_current->previous = &place;
    return true;
}

void PhotoWatch::Leave(PhotoPlace& place)
{
    if (place.next == &place)
        return;
    place.previous->next = place.next;
    place.next->previous = place.previous;
    // The one that is left of a ring is the watch.
    if (place.next == place.previous)
        delete static_cast<PhotoWatch*>(place.next);
}

void PhotoWatch::OnPhotoTaken(int status, const QString& imagePath)
{
    for (PhotoPlace* place = next; place != this; place = place->next)
        m_handler(*place, status, imagePath);
}
