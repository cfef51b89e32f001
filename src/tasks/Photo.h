#pragma once

#include "PhotoWatch.h"
#include "PunctualTask.h"

#include <QBasicTimer>
#include <QElapsedTimer>

// Takes one photo, or a series at a fixed interval that ends when the number of photos is reached.
// Every Photo task sees every photo that is taken, whoever requested it. Running means that photo work is in progress:
// a photo, or the end of the series, ends it; a failed request does not. When the photo manager leaves the bus, or was
// not there when it was called, the task may be started again all the same.
// A series that could not be stopped goes on, and each further photo requests the stop again. Photos that queued up
// during stops that failed slowly request it only once, so that a flood costs a time-out or two, not one a photo.
class Photo final : public PunctualTask, private PhotoPlace
{
    Q_OBJECT
public:
    // parameter: "interval,number", the interval in seconds, neither of them limited; empty: one photo.
    // A series of 0 photos ends with its first, one of a negative number never.
    explicit Photo(const QString& parameter);
    ~Photo() override;

    bool Run() override;

    // How many photos are asked for, as the line gives it.
    [[nodiscard]] int Number() const { return m_numPhoto; }

protected:
    void timerEvent(QTimerEvent* event) override;

private Q_SLOTS:
    void OnPhotoTaken(int status, const QString& imagePath);

private:
    void Parse(const QString& parameter);
    [[nodiscard]] QString GetSubject() const override;
    bool TakeSinglePhoto();
    bool TakeMultiplePhoto();
    void StopSeries();
    [[nodiscard]] bool IsRushed() const;

    int m_interval_s;
    int m_numPhoto;
    unsigned int m_photoCount = 0;
    QBasicTimer m_rest;       // fires when the loop is done with the photos that have queued up
    QElapsedTimer m_rush;     // since the first stop of those that failed in one go; valid while they last
    bool m_streaming = false; // the photo manager has accepted this task's series
    bool m_asksLater = false; // at least one photo of a rush would have requested the stop
};
