#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <utility>

// The folder of the sounds that a schedule names. Each folder below it is listed once.
class MediaFolder final
{
public:
    // Throws ToolError when it is no folder, or the program cannot read sounds.
    explicit MediaFolder(const QString& folder);

    [[nodiscard]] QString Path() const { return m_folder; }

    struct Place
    {
        QString path;    // of the file with that name, to the letter; empty where there is none
        QString instead; // else the name of one that differs in letter case alone; empty where there is none
        QString similar; // else the name of one that differs in its ending; empty where there is none
    };

    // name: as a schedule or a playlist has it; it may lead into a folder below.
    [[nodiscard]] Place Find(const QString& name);

private:
    // The names in a folder, by its path below; files: those of files instead of folders.
    [[nodiscard]] const QStringList& Names(const QString& below, bool files);

    const QString m_folder;
    QHash<std::pair<QString, bool>, QStringList> m_names;
};
