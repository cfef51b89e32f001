#pragma once

#include <QMetaObject>
#include <QObject>
#include <QString>

class PhotoManagerProxy;

// The place of a task in a ring.
struct PhotoPlace
{
    PhotoPlace* previous = this;
    PhotoPlace* next = this;

    PhotoPlace() = default;
    PhotoPlace(const PhotoPlace&) = delete;
    PhotoPlace& operator=(const PhotoPlace&) = delete;
};

// Hands each photo that the photo manager announces to all Photo tasks, in the order in which they were made. They
// share one connection: one of its own would take a task more memory than the whole rest of its entry. Lives while
// there are tasks, which form a ring with it.
class PhotoWatch final : public QObject, private PhotoPlace
{
    Q_OBJECT
public:
    // Hands a photo to the task that has the place.
    using Handler = void (*)(PhotoPlace& place, int status, const QString& imagePath);

    // The task sees each photo from now on; false when it cannot. It must leave before it is deleted.
    // handler: the same for all tasks.
    [[nodiscard]] static bool Join(PhotoPlace& place, Handler handler);

    // Does nothing for a place that has not joined. Not to be called while a photo is handed out.
    static void Leave(PhotoPlace& place);

private Q_SLOTS:
    void OnPhotoTaken(int status, const QString& imagePath);

private:
    PhotoWatch(const PhotoManagerProxy* photos, Handler handler);
    ~PhotoWatch() override;

    [[nodiscard]] bool IsOf(const PhotoManagerProxy* photos) const;

    const PhotoManagerProxy* const m_photos; // not to be used when the connection has ended
    const Handler m_handler;
    const QMetaObject::Connection m_connection;
};
