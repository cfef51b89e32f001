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

    [[nodiscard]] bool AtEnd() const { return m_stream.atEnd(); }

    // The next line, of any length, without its terminator (line feed, or carriage return and line feed).
    QString ReadLine() { return m_stream.readLine(); }

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
