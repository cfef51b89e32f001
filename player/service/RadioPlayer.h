#pragma once

#include "LivePiece.h"
#include "Means.h"
#include "Status.h"

#include <QObject>
#include <QString>

// A radio whose stations are streams: it is switched on and tuned in either order.
class RadioPlayer final : public QObject
{
    Q_OBJECT
public:
    explicit RadioPlayer(const Means& means);
    ~RadioPlayer() override;
    Q_DISABLE_COPY_MOVE(RadioPlayer)

    // NOT_SET_UP, and a record, where the settings have no station at all.
    [[nodiscard]] Status SwitchOn();
    // NOT_SET_UP, and a record, where they have none of that frequency; the radio is silent then.
    [[nodiscard]] Status Tune(double frequency_MHz);
    // It has to be tuned anew.
    void SwitchOff();

private:
    void Play();

    const Means m_means;
    LivePiece m_live;
    bool m_isOn = false;
    QString m_address; // of the station that it is tuned to, or empty
};
