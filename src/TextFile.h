#pragma once

#include <QFile>
#include <QTextStream>

// A text file, read line by line. Only a regular file is opened, and never waited for: a folder, a device or a pipe
// counts as a file that cannot be opened, at once.
class TextFile final
{
public:
    explicit TextFile(const QString& path);

    // False when the file cannot be opened.
    [[nodiscard]] bool Open();

    // Reads the next line, of any length, without its terminator. False when there is none, at the end of the file or
    // where reading fails. A carriage return counts as part of a terminator wherever it stands.
    [[nodiscard]] bool ReadLine(QString& line) { return m_stream.readLineInto(&line); }

    // Why reading ended before the end of the file; empty when it did not.
    [[nodiscard]] QString ReadError() const;

    // Whether line holds nothing but blanks, or is a comment: a "#" before the last visible character makes one of
    // the whole line, while a "#" that is itself the last visible character does not.
    static bool IsBlankOrComment(const QString& line);

private:
    const QString m_path;
    QFile m_file;
    QTextStream m_stream;
};
