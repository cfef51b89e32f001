#pragma once

#include "CameraBehaviour.h"
#include "PlayerBehaviour.h"

class Simulator;

// Plays the device's part: carries out what a peer has accepted, and sends the peer's signals.
class DeviceBehaviour final : public QObject
{
    Q_OBJECT
public:
    // Follows the calls that simulator accepts; simulator outlives the behaviour.
    explicit DeviceBehaviour(Simulator& simulator);
    ~DeviceBehaviour() override;

private:
    struct Reaction;

    void React(const Call& call);
    void Play(const Call& call) { m_player.Play(call); }
    void StopPlay(const Call& call) { m_player.Stop(call); }
    void TakeOnePhoto(const Call& call) { m_camera.TakeOne(call); }
    void StartPhotos(const Call& call) { m_camera.StartSeries(call); }
    void StopPhotos(const Call& call) { m_camera.StopSeries(call); }
    void Send(const QString& interface, const QString& signal, const QVariantList& values);

    Simulator& m_simulator;
    PlayerBehaviour m_player;
    CameraBehaviour m_camera;
};
