#pragma once

#include "ControlTest.h"

// What a test of a deployment stands on: a schedule and a playlist that the daemon has, and others that are to come.
class DeployTest : public ControlTest
{
    Q_OBJECT
protected:
    inline static const QByteArray OLD{
        "1111111|12:00:00|*|*|*|||PlayPlaylist|day\n1111111|11:00:00|*|*|*|||Volume|10\n"};
    inline static const QByteArray NEW{
        "1111111|12:00:00|*|*|*|||PlayPlaylist|day\n1111111|11:00:00|*|*|*|||Volume|20\n"};
    inline static const QByteArray OLD_PLAYLIST{"one.mp3;60\n"};
    inline static const QByteArray NEW_PLAYLIST{"two.mp3;60\ntwo.mp3;60\n"};

    // Brings all files into their first state, and takes away what a deployment has left.
    void Prepare();

    // Runs deploy with further arguments, separated by blanks.
    [[nodiscard]] Result RunDeploy(const QString& arguments, const QProcessEnvironment& environment);
    [[nodiscard]] Result RunDeploy(const QString& arguments) { return RunDeploy(arguments, ToolEnvironment()); }
    [[nodiscard]] QString DeployArguments(const QString& arguments) const;

    // The tool's folder for what is temporary is the test's.
    [[nodiscard]] QProcessEnvironment ToolEnvironment();

    // The new schedule, " PATH".
    [[nodiscard]] QString NewFile() const { return u' ' + DataPath(QStringLiteral("to-come/schedule.csv")); }

    [[nodiscard]] QByteArray Content(const QString& name) const;
    [[nodiscard]] QByteArray Schedule() const { return Content(QStringLiteral("schedule/schedule.csv")); }
    [[nodiscard]] QByteArray Playlist() const { return Content(QStringLiteral("playlists/day")); }
};
