#pragma once

#include "LogRecorder.h"
#include "Recording.h"
#include "sound/GstSoundMaker.h"

#include <QObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <optional>

// A sound maker that writes a file, and what it has told. Sounds are made by the test, and found again by the sample.
class SoundTest : public QObject
{
    Q_OBJECT
protected:
    struct Told
    {
        bool isReady = false;
        std::optional<qint64> heard_ms;
        QStringList skipped; // "source: reason", without the folder
        std::optional<QString> ended;
        int ends = 0;
        qint64 ended_ms = 0;
    };

    // A steady tone of that level, 0 to 1, in a file of the test's folder. It begins and ends with its full level, so
    // that its first and last frame can be found. Returns the path.
    QString Tone(const QString& name, qint64 frames, double level = 0.5, int rate = 48000);
    [[nodiscard]] QString Path(const QString& name) const { return m_folder->filePath(name); }
    [[nodiscard]] QString OutputPath() const { return Path(QStringLiteral("heard.raw")); }

    // Makes the sound maker anew. The output is the file OutputPath unless another is given.
    void Begin(SoundSettings settings = {});
    // Ends it, and reads what it wrote.
    Recording End();
    GstSoundMaker& Maker() { return *m_maker; }

    SoundMaker::Id Play(const Piece& piece);
    SoundMaker::Id PlayMessage(const QString& path, std::optional<qint64> due_ms = {}, double volume = 100);
    SoundMaker::Id PlayList(const QStringList& paths, qint64 gap_ms, std::optional<qint64> due_ms = {});
    const Told& Of(SoundMaker::Id id) { return m_told[id]; }
    [[nodiscard]] bool HasEnded(SoundMaker::Id id) const { return m_told.value(id).ended.has_value(); }

    static qint64 Now_ms();

protected Q_SLOTS:
    void init();
    void cleanup();

private:
    std::optional<QTemporaryDir> m_folder;
    std::unique_ptr<GstSoundMaker> m_maker;
    QMap<SoundMaker::Id, Told> m_told;
};
