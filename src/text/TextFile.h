#pragma once

#include <QFile>
#include <QStringDecoder>

// A text file, read line by line. Only a regular file is opened, and never waited for: a folder, a device or a pipe
// counts as a file that cannot be opened, at once. A byte-order mark at its beginning tells the encoding, and is no
// part of the first line; without one the text is UTF-8.
//
// What was opened is read on, whatever comes to stand under its name meanwhile. No file holds its reader for ever: of
// one that grows as fast as it is read, no more is read than it had when it was opened, or a megabyte of a smaller one.
class TextFile final
{
public:
    static constexpr QChar COMMENT_SIGN = u'#';

    explicit TextFile(const QString& path);

    // False when the file cannot be opened.
    [[nodiscard]] bool Open();

    // Why it could not be opened, in the system's words; empty when it was, or when there is no such file.
    [[nodiscard]] QString OpenError() const { return m_openError; }

    // Whether anything has that path, be it a file that can be opened or not.
    [[nodiscard]] bool Exists() const;

    // Reads the next line, of any length, without its end: a line feed, or a carriage return and a line feed. A
    // carriage return that no line feed follows is dropped, and ends no line. False when there is none, at the end of
    // the file or where reading fails.
    [[nodiscard]] bool ReadLine(QString& line);

    // The number of the line read last, counted from 1; 0 before the first.
    [[nodiscard]] int LineNumber() const { return m_lineNumber; }

    // Whether the line read last has an end. Only the last line of a file can have none: the file may be cut.
    // True before the first.
    [[nodiscard]] bool HasLineEnd() const { return m_hasLineEnd; }

    // Whether a carriage return was dropped from the line read last.
    [[nodiscard]] bool HasLoneReturn() const { return m_hasLoneReturn; }

    // Why reading ended before the end of the file; empty when it did not.
    [[nodiscard]] QString ReadError() const;

    // Whether line holds nothing but blanks, or is a comment: a "#" before the last visible character makes one of
    // the whole line, while a "#" that is itself the last visible character does not.
    static bool IsBlankOrComment(QStringView line);

private:
    bool ReadBlock();

    const QString m_path;
    QFile m_file;
    qint64 m_unread = 0;      // how many bytes may still be read
    QStringDecoder m_decoder; // invalid until the first block has told the encoding
    QString m_block;          // what was read last
    qsizetype m_position = 0; // how much of the block has been handed out
    QString m_openError;
    bool m_hasLineEnd = true;
    bool m_hasLoneReturn = false;
    int m_lineNumber = 0;
};
