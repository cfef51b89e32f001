#include "EveryKind.h"

namespace
{

const QByteArray SCHEDULE = "1111111|08:30:00|*|*|*|||PlayMessage|gong.mp3\n"
                            "1111111|08:30:00|*|*|*|||PlayPlaylist|day,30,morning\n"
                            "1111111|08:30:00|*|*|*|||Light|50\n"
                            "1111111|08:30:00|*|*|*|||Amplifiers|300\n"
                            "1111111|08:30:00|*|*|*|||Volume|-5\n"
                            "1111111|08:30:00|*|*|*|||Camera|1\n"
                            "1111111|08:30:00|*|*|*|||SetCpuFreq|600\n"
                            "1111111|08:30:00|*|*|*|||Gps|1\n"
                            "1111111|08:30:00|*|*|*|||Lan|1\n"
                            "1111111|08:30:00|*|*|*|||Lan|0\n"
                            "1111111|08:30:00|*|*|*|||RecordPhoto\n"
                            "1111111|08:30:00|*|*|*|||RecordPhoto|10,3\n"
                            "1111111|08:30:00|*|*|*|||StopMessage\n"
                            "1111111|08:30:00|*|*|*|||StopPlaylist|day\n"
                            "1111111|08:30:00|*|*|*|||StopStream\n"
                            "1111111|08:30:00|*|*|*|||StopRadioFm\n"
                            "1111111|08:30:00|*|*|*|||PlayStream|8554/live,40\n"
                            "1111111|08:30:00|*|*|*|||PlayRadioFm|98.5\n"
                            "1111111|08:30:00|*|*|*|||PlayRadioFm|0\n"
                            "1111111|08:30:00|*|*|*|||enableAux|1\n"
                            "1111111|08:30:00|*|*|*|||enableAux|0\n"
                            "1111111|08:30:00|*|*|*|||19|1,1\n"
                            "1111111|08:30:00|*|*|*|||StopMessage\n";

bool IsTaskLine(const QString& line)
{
    return line.contains(QStringLiteral("[tasks/"));
}

} // namespace

bool EveryKind::StartSchedule()
{
    WriteSchedule(SCHEDULE);
    WritePlaylist("first.mp3;60\n", QStringLiteral("day"));
    WriteFile(DataPath(QStringLiteral("ozna.ini")), "[GENERAL]\nServerIp=10.0.0.5\n");
    Time().Set(QDateTime(QDate(2024, 1, 15), QTime(8, 29, 54), Qt::UTC));
    if (!StartDaemon())
        return false;
    return Daemon().Take(2) ==
           QStringList{
               QStringLiteral("2 [tasks/CpuFreq.cpp] Can't parse Cpu frequency from parameters: '600'. Using 456.")};
}

QStringList EveryKind::TakeTaskLines(unsigned int maxLevel)
{
    QStringList lines = Daemon().Take(maxLevel);
    lines.removeIf([](const QString& line) { return !IsTaskLine(line); });
    return lines;
}

bool EveryKind::WaitForTheLast()
{
    const QString started = QStringLiteral("9 [Action.cpp] Task StopMessage is starting !");
    // The bus hears an answer when the pass that starts them all is over.
    return WaitUntil([&] { return Daemon().Log().count(started) == 2; }, 60000) &&
           Client().Call("IsEnabled") == QStringLiteral("0,true,schedule.csv");
}

QStringList EveryKind::AcceptedCalls()
{
    // The first two are asked for ahead of their time.
    return {QStringLiteral("sound.PlayFile ss gong.mp3 08:30:00"),
            QStringLiteral("sound.SetPlayerVolume sd playlist 30"),
            QStringLiteral("sound.PlayPlaylist ssusb day morning 1 08:30:00 false"),
            QStringLiteral("light.SetIntensity u 50"),
            QStringLiteral("light.Switch b true"),
            QStringLiteral("sound.SetAmplifiers y 44"),
            QStringLiteral("sound.SetMasterVolume d -5"),
            QStringLiteral("photo.EnableCamera b true"),
            QStringLiteral("freq.SetFreq i 456"),
            QStringLiteral("gps.SetEnabled b true"),
            QStringLiteral("network.EnableLan bsss true   "),
            QStringLiteral("network.DisableLan -"),
            QStringLiteral("photo.TakePhoto -"),
            QStringLiteral("photo.TakePhotoStream i 10"),
            QStringLiteral("sound.StopPlay ss file "),
            QStringLiteral("sound.StopPlay ss playlist day"),
            QStringLiteral("sound.StopPlay ss stream "),
            QStringLiteral("sound.StopPlay ss radiofm "),
            QStringLiteral("sound.SetPlayerVolume sd stream 40"),
            QStringLiteral("sound.PlayStream su rtsp://10.0.0.5:8554/live 0"),
            QStringLiteral("sound.PlayRadioFm -"),
            QStringLiteral("sound.RadioFmSetFrequency d 98.5"),
            QStringLiteral("sound.StopPlay ss radiofm "),
            QStringLiteral("sound.PlayAux -"),
            QStringLiteral("sound.StopPlay ss aux "),
            QStringLiteral("sound.StopPlay ss file ")};
}

QList<QByteArray> EveryKind::Methods()
{
    QList<QByteArray> methods;
    for (const QString& call : AcceptedCalls())
    {
        const QByteArray method = call.section(QLatin1Char(' '), 0, 0).toLatin1();
        if (!methods.contains(method))
            methods.append(method);
    }
    return methods;
}
