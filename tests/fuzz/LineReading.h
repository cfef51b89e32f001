#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

// A schedule line, read a second time.
struct LineReading
{
    explicit LineReading(const QString& line);

    // Whether the line has the fields and the start time that every action needs, and a task with enough parameters.
    // A playlist may still be rejected for what is in its file.
    [[nodiscard]] bool IsAction() const;

    // The same line from what was understood of it, in the plainest form.
    [[nodiscard]] QString Rewritten() const;

    QStringList fields;
    bool hasFields = false; // what follows is only read when it has
    bool hasStart = false;
    unsigned int daysMask = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    int day = 0;
    int month = 0;
    int year = 0;
    QDate from;
    QDate to;
    int type = 0;
    QString parameterText;
    QStringList parameters;
};
