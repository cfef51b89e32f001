#include "DeployTest.h"

#include <QDir>

using namespace Qt::StringLiterals;

void DeployTest::Prepare()
{
    for (const QString& name : {u"deployed-before"_s, u"deployed-before.next"_s, u"deployed.next"_s, u"tmp"_s})
    {
        if (!QDir(DataPath(name)).removeRecursively())
            qFatal("cannot remove a folder");
    }
    if (!QDir().mkpath(DataPath(u"to-come/playlists"_s)) || !QDir().mkpath(DataPath(u"tmp"_s)))
        qFatal("cannot make a folder");
    WriteSchedule(OLD);
    WritePlaylist(OLD_PLAYLIST, u"day"_s);
    WriteFile(DataPath(u"to-come/schedule.csv"_s), NEW);
    WriteFile(DataPath(u"to-come/playlists/day"_s), NEW_PLAYLIST);
}

QString DeployTest::DeployArguments(const QString& arguments) const
{
    return u"deploy "_s + arguments + Data() + u" --playlists "_s + DataPath(u"to-come/playlists"_s);
}

ControlTest::Result DeployTest::RunDeploy(const QString& arguments, const QProcessEnvironment& environment)
{
    return Run(DeployArguments(arguments), environment);
}

QProcessEnvironment DeployTest::ToolEnvironment()
{
    QProcessEnvironment environment = Environment();
    environment.insert(u"TMPDIR"_s, DataPath(u"tmp"_s));
    return environment;
}

QByteArray DeployTest::Content(const QString& name) const
{
    QFile file(DataPath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("is not there");
}
