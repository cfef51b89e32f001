#pragma once

#include "FindingKind.h"

#include <QString>

#include <vector>

// One way in which a line does not do what its writer meant.
struct Finding
{
    int line; // counted from 1
    FindingKind kind;
    QString field;  // which it is about, as the documents call it
    QString text;   // what is wrong
    QString advice; // what to write instead

    // The three of them as one, without a full stop: "start time: at midnight sharp it never starts; write ...".
    [[nodiscard]] QString Sentence() const;
};

// What a check has found so far.
class Findings final
{
public:
    void Add(Finding finding) { m_all.push_back(std::move(finding)); }

    // Brings them into the order of the lines, and on a line into that of the kinds.
    void Sort();

    [[nodiscard]] const std::vector<Finding>& All() const { return m_all; }
    [[nodiscard]] int Errors() const;
    [[nodiscard]] int Warnings() const { return static_cast<int>(m_all.size()) - Errors(); }

private:
    std::vector<Finding> m_all;
};
