#pragma once

#include "text/ScheduleFields.h"

#include <QStringList>

#include <vector>

// Which field each part of a line is meant for, where some are missing, too many, or separated by another sign.
struct FieldFit
{
    QStringList fields;                         // as many as the line needs; those that are missing as they are without
    std::vector<ScheduleFields::Field> missing; // in their order; the parameters never are
    std::vector<qsizetype> surplus;             // places of empty parts that are no field
    bool hasWholeDate = false;                  // day, month and year are one part
    bool hasParametersApart = false;            // parameters are parts of their own
    int cost = 0;                               // how far the parts are from a line; 0: they are one

    // From that cost on they are none.
    static constexpr int TOO_FAR = 20;

    [[nodiscard]] bool IsLine() const { return cost < TOO_FAR; }

    // Whether nothing is known that could be written for what is missing.
    [[nodiscard]] bool LacksTimeOrTask() const;

    // The line that is meant.
    [[nodiscard]] QString Line() const;

    // parts: trimmed.
    [[nodiscard]] static FieldFit Of(const QStringList& parts);
};
