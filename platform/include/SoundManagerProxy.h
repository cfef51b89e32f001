#pragma once

#include <QDBusAbstractInterface>

// Client of the device's sound manager, interface "com.kestrelix.ozna.soundinterface".
// Its methods are called by name through the abstract interface.
class SoundManagerProxy : public QDBusAbstractInterface
{
    Q_OBJECT
public:
    SoundManagerProxy(const QString& service, const QString& path, const QDBusConnection& connection, QObject* parent);
    ~SoundManagerProxy() override;

    static const char* staticInterfaceName();

Q_SIGNALS:
    void PlayFileCompleted(const QString& file);
    void PlayPlaylistCompleted(const QString& playlist);
    void StreamEnabled(bool enabled);
};
