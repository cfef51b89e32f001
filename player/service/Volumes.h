#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QTimer>

// The volumes that were set, 0 to 100 percent, kept over a restart of the process. What was never set is 100.
class Volumes final : public QObject
{
    Q_OBJECT
public:
    static constexpr double FULL = 100;
    static constexpr const char* MASTER = "master";
    // A change is written when this has passed, together with those that came meanwhile, by a thread of its own: a card
    // may take seconds, in which requests would not be answered.
    static constexpr int WRITTEN_AFTER_MS = 1000;

    // Reads the file, if there is one. What is wrong with it is logged, and so is each volume that is not full.
    explicit Volumes(QString file);
    // Writes what is not written yet.
    ~Volumes() override;
    Q_DISABLE_COPY_MOVE(Volumes)

    // Below the folder that the service manager gives (STATE_DIRECTORY), or else below the user's own for such files.
    [[nodiscard]] static QString DefaultFile();

    [[nodiscard]] static bool IsVolume(double volume) { return volume >= 0 && volume <= FULL; }

    // name: a source's, or MASTER.
    [[nodiscard]] double Of(const QString& name) const { return m_volumes.value(name, FULL); }
    void Set(const QString& name, double volume);

    // Writes at once, if there is anything to be written. A failure is logged.
    void Write();

private:
    void Read();
    void WriteBeside();
    // What is to be written; nothing is, from then on.
    [[nodiscard]] QByteArray TakeText();
    void Report(const QString& error) const;

    const QString m_file;
    QHash<QString, double> m_volumes;
    QTimer m_timer;
    QThreadPool m_writer;
    bool m_isWritten = true;
};
