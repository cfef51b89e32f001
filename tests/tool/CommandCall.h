#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <optional>

// Runs the tool in a folder where the files that it is given are. No terminal is near.
class CommandCall final
{
public:
    struct Result
    {
        int status = -1; // 128 and the signal where one has ended it
        QString output;
        QString errors;

        [[nodiscard]] bool operator==(const Result& other) const = default;

        // What a comparison that fails shows.
        friend char* toString(const Result& result)
        {
            return qstrdup(qPrintable(QString::number(result.status) + u'\n' + result.output + u'\n' + result.errors));
        }
    };

    // In a new folder, gone with the object. Throws std::runtime_error when there is none to be had.
    CommandCall();

    // In a folder that is there, and is left as it is.
    explicit CommandCall(const QString& folder);

    // Writes a file of the folder; name may lead into a folder below it. Throws std::runtime_error when it cannot.
    void Write(const QString& name, const QByteArray& content) const;

    [[nodiscard]] QString Folder() const { return m_folder; }

    // Runs the tool with arguments until it ends. Throws std::runtime_error when it does not start or does not end.
    [[nodiscard]] Result Run(const QStringList& arguments, const QByteArray& input = {}) const;

    // arguments: separated by blanks.
    [[nodiscard]] Result Run(const char* arguments) const { return Run(QString::fromUtf8(arguments).split(u' ')); }

    // Another program, in the same way.
    [[nodiscard]] Result RunProgram(const QString& program, const QStringList& arguments,
                                    const QByteArray& input = {}) const;

private:
    std::optional<QTemporaryDir> m_ownFolder;
    QString m_folder;
};
