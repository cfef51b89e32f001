#pragma once

#include <QString>

// A schedule line with the fields that a test is about; the others are those of a StopMessage on every day at 08:30.
struct ActionLine
{
    QString days = QStringLiteral("1111111");
    QString start = QStringLiteral("08:30:00");
    QString day = QStringLiteral("*");
    QString month = QStringLiteral("*");
    QString year = QStringLiteral("*");
    QString from{};
    QString to{};
    QString task = QStringLiteral("StopMessage");

    [[nodiscard]] QString Text() const
    {
        return QStringList{days, start, day, month, year, from, to, task}.join(QLatin1Char('|'));
    }
};
