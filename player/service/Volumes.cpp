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

// What is wrong; empty when it is written. By any thread.
QString Save(const QString& path, const QByteArray& text)
{
    if (!QDir().mkpath(QFileInfo(path).path()))
        return QStringLiteral("there is no such folder");
    QSaveFile file(path);
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
    return isWritten ? QString() : file.errorString();
}

} // namespace

Volumes::Volumes(QString file)
    : m_file(std::move(file))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(WRITTEN_AFTER_MS);
    m_timer.callOnTimeout(this, &Volumes::WriteBeside);
    m_writer.setMaxThreadCount(1);
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
    // What was written beside is older.
    m_writer.waitForDone();
    if (!m_isWritten)
        Report(Save(m_file, TakeText()));
}

void Volumes::WriteBeside()
{
    m_writer.start([this, file = m_file, text = TakeText()] {
        const QString error = Save(file, text);
        if (!error.isEmpty())
            QMetaObject::invokeMethod(
                this, [this, error] { Report(error); }, Qt::QueuedConnection);
    });
}

QByteArray Volumes::TakeText()
{
    // Tried again with the next change alone: a full disk is not told of every second.
    m_isWritten = true;
    QByteArray text = '[' + SECTION.toLatin1() + "]\n";
    QStringList names = m_volumes.keys();
    names.sort();
    for (const QString& name : std::as_const(names))
        text += name.toLatin1() + '=' + QByteArray::number(Of(name)) + '\n';
    return text;
}

void Volumes::Report(const QString& error) const
{
    if (!error.isEmpty())
        PLAYER_LOG(LEVEL_WARNING, "%s cannot be written: %s", qPrintable(m_file), qPrintable(error));
}
