#pragma once

#include "Call.h"

#include <QObject>
#include <QTimer>
#include <QVariantList>

#include <functional>

// The photo manager's camera: photos are taken, one or a series, with their signals.
class CameraBehaviour final : public QObject
{
    Q_OBJECT
public:
    // Sends a signal of the photo manager.
    using Send = std::function<void(const QString& signal, const QVariantList& values)>;

    explicit CameraBehaviour(Send send);
    ~CameraBehaviour() override;

    // Takes one photo, a second after TakePhoto.
    void TakeOne(const Call& call);

    // Begins a series with the interval of TakePhotoStream, a second at least, in place of one that is going on.
    void StartSeries(const Call& call);

    // Ends the series and tells its number of photos; nothing when there is none.
    void StopSeries(const Call& call);

private:
    void TakePhoto();

    const Send m_send;
    QTimer m_series;
    int m_seriesCount = 0;
    int m_totalCount = 0;
};
