#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <initializer_list>

// One record as the log client got it.
struct LogRecord
{
    unsigned int level;
    QByteArray text; // with its prefix "[file:line] "
    QByteArray origin;
};

// A record that a test expects.
struct LogLine
{
    // record: UTF-8, level, source file and text, "3 [Action.cpp] Unknown task (3)". The line number has to be there,
    // but which it is is nobody's business. origin: null for that of nearly every record.
    LogLine(const char* record, const char* origin = nullptr);
    LogLine(const QByteArray& record, const char* origin = nullptr);

    // As it is shown: another origin stands at the end, "(from ...)".
    explicit LogLine(QString record);

    QString shown;
};

using LogLines = QList<LogLine>;

// Records as they are shown.
LogLines ToLines(const QStringList& records);

// Takes the place of the log client: its object file defines the class LogInterface, and is linked before the
// platform. Records are kept in the order in which they came, for the process, until they are taken.
namespace LogRecorder
{

// Puts a recording log client in the process's place for one. Called again, changes nothing.
void Install();

// The records up to that level, without taking them.
QList<LogRecord> Records(unsigned int maxLevel = 9);

// The texts of those records, without their prefix.
QStringList Messages(unsigned int maxLevel = 9);

// Forgets all records.
void Clear();

// Takes all records and compares those up to maxLevel with expected: every one, in order, with level, source file,
// text and origin. Empty when they are equal, otherwise a text for people.
QByteArray Compare(unsigned int maxLevel, const LogLines& expected);

} // namespace LogRecorder

// Fails the test, and leaves the test function, unless the records up to maxLevel are exactly those given.
// All records are taken, those above maxLevel as well.
#define EXPECT_LOG(maxLevel, ...)                                                                                      \
    do                                                                                                                 \
    {                                                                                                                  \
        const QByteArray logDifference = LogRecorder::Compare((maxLevel), LogLines __VA_ARGS__);                       \
        if (!logDifference.isEmpty())                                                                                  \
        {                                                                                                              \
            QTest::qFail(logDifference.constData(), __FILE__, __LINE__);                                               \
            return;                                                                                                    \
        }                                                                                                              \
    } while (false)
