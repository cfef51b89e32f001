#pragma once

#include "SystemOutput.h"

#include <QList>
#include <QObject>

// The lights of the machine as the light manager: one intensity and one switch for all. What the bus calls are its
// slots; each answers with a Status.
class LightObject final : public QObject
{
    Q_OBJECT
public:
    // names: outputs in one of the folders. One that is not there is logged, and left out.
    LightObject(const QStringList& names, const QStringList& folders);
    ~LightObject() override;
    Q_DISABLE_COPY_MOVE(LightObject)

public Q_SLOTS:
    int GetIntensity(uint& intensity);
    int GetSwitch(bool& on);
    // In percent; what is greater is full. Shows when the light is on, or is switched on.
    int SetIntensity(uint intensity);
    int Switch(bool on);

Q_SIGNALS:
    void LedStatus(uint intensity);
    void LedSwitch(bool on);

private:
    [[nodiscard]] int Show() const;

    QList<SystemOutput> m_outputs;
    uint m_intensity;
    bool m_isOn = false;
};
