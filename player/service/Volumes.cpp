#include "Volumes.h"

#include "PlayerLog.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QSettings>

namespace
{

constexpr const char* FOLDER_VARIABLE = "STATE_DIRECTORY";
constexpr const char* USER_VARIABLE = "XDG_STATE_HOME";
const QString USER_FOLDER = QStringLiteral(".local/state");
const QString OUR_FOLDER = QStringLiteral("ozna-player");
const QString FILE_NAME = QStringLiteral("volumes.ini");
const QString SECTION = QStringLiteral("volumes");

} // namespace

Volumes::Volumes(QString file)
    : m_file(std::move(file))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(WRITTEN_AFTER_MS);
    m_timer.callOnTimeout(this, &Volumes::Write);
    Read();
    QStringList names = m_volumes.keys();
    names.sort();
    for (const QString& name : std::as_const(names))
    {
        if (Of(name) != FULL)
            PLAYER_LOG(LEVEL_NORMAL, "KEPT VOLUME | %s: %g", qPrintable(name), Of(name));
    }
}

Volumes::~Volumes()
{
    Write();
}

QString Volumes::DefaultFile()
{
    // The service manager's may be several, with ":" between them.
    const QString given = qEnvironmentVariable(FOLDER_VARIABLE).section(u':', 0, 0);
    if (!given.isEmpty())
        return given + u'/' + FILE_NAME;
    const QString home = qEnvironmentVariable(USER_VARIABLE);
    return (home.isEmpty() ? QDir::homePath() + u'/' + USER_FOLDER : home) + u'/' + OUR_FOLDER + u'/' + FILE_NAME;
}

void Volumes::Set(const QString& name, double volume)
{
    if (Of(name) == volume)
        return;
    m_volumes.insert(name, volume);
    m_isWritten = false;
    if (!m_timer.isActive())
        m_timer.start();
}

void Volumes::Read()
{
    if (!QFileInfo::exists(m_file))
        return;
    QSettings ini(m_file, QSettings::IniFormat);
    ini.beginGroup(SECTION);
    const QStringList names = ini.childKeys();
    if (ini.status() != QSettings::NoError || !QFileInfo(m_file).isReadable())
        PLAYER_LOG(LEVEL_WARNING, "%s cannot be read: the volumes are full", qPrintable(m_file));
    for (const QString& name : names)
    {
        bool isNumber = false;
        const double volume = ini.value(name).toDouble(&isNumber);
        if (isNumber && IsVolume(volume))
            m_volumes.insert(name, volume);
        else
            PLAYER_LOG(LEVEL_WARNING, "%s: %s=%s is no volume", qPrintable(m_file), qPrintable(name),
                       qPrintable(ini.value(name).toString()));
    }
}

void Volumes::Write()
{
    m_timer.stop();
    if (m_isWritten)
        return;
    // Tried again with the next change alone: a full disk is not told of every second.
    m_isWritten = true;
    QByteArray text = '[' + SECTION.toLatin1() + "]\n";
    QStringList names = m_volumes.keys();
    names.sort();
    for (const QString& name : std::as_const(names))
        text += name.toLatin1() + '=' + QByteArray::number(Of(name)) + '\n';
    QSaveFile file(m_file);
    const bool hasFolder = QDir().mkpath(QFileInfo(m_file).path());
    if (!hasFolder || !file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        PLAYER_LOG(LEVEL_WARNING, "%s cannot be written: %s", qPrintable(m_file),
                   hasFolder ? qPrintable(file.errorString()) : "there is no such folder");
}
