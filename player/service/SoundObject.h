#pragma once

#include "AuxPlayer.h"
#include "FilePlayer.h"
#include "PlayerSettings.h"
#include "PlaylistPlayer.h"
#include "RadioPlayer.h"
#include "RequestVolumes.h"
#include "StreamPlayer.h"
#include "SystemOutput.h"
#include "Volumes.h"

#include <QDBusContext>
#include <QObject>

// The sound manager as the bus sees it: its slots are what can be called. Each answers with a Status, some of them
// later than they return.
class SoundObject final : public QObject, protected QDBusContext
{
    Q_OBJECT
public:
    // maker: outlives this object. volumeFile: where the volumes are kept. amplifiers: the folder of their outputs.
    SoundObject(SoundMaker& maker, PlayerSettings settings, const QString& volumeFile,
                QString amplifiers = SystemOutput::LEDS);
    ~SoundObject() override;
    Q_DISABLE_COPY_MOVE(SoundObject)

    // The process ends: ends whatever plays or waits, and writes the volumes.
    void End();

public Q_SLOTS:
    int PlayFile(const QString& file, const QString& startTime);
    int PlayPlaylist(const QString& playlist, const QString& identifier, uint firstTrack, const QString& startTime,
                     bool reserved);
    int PlayStream(const QString& uri, uint reserved);
    int PlayRadioFm();
    int RadioFmSetFrequency(double frequencyMHz);
    int PlayAux();
    // 0 also where nothing plays: what is asked for is so.
    int StopPlay(const QString& source, const QString& identifier);
    int SetPlayerVolume(const QString& source, double volume);
    int SetMasterVolume(double volume);
    int SetAmplifiers(unsigned char mask);

Q_SIGNALS:
    void PlayFileCompleted(const QString& file);
    void PlayPlaylistCompleted(const QString& playlist);
    void StreamEnabled(bool enabled);

private:
    // Has the call that is handled now answered by what is returned, and not by what its slot returns.
    [[nodiscard]] Answer AnswerLater();

    SoundMaker& m_maker;
    const PlayerSettings m_settings;
    const QString m_amplifiers;
    Volumes m_volumes;
    RequestVolumes m_requestVolumes;
    const Means m_means;
    FilePlayer m_files;
    PlaylistPlayer m_playlists;
    StreamPlayer m_stream;
    RadioPlayer m_radio;
    AuxPlayer m_aux;
};
