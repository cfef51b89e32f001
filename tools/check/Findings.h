#pragma once

#include "FindingKind.h"

#include <QSet>
#include <QString>

#include <optional>
#include <vector>

// One way in which a line does not do what its writer meant.
struct Finding
{
    int line; // counted from 1
    FindingKind kind;
    QString field;  // which it is about, as the documents call it
    QString text;   // what is wrong
    QString advice; // what to write instead
    int column = 0; // where it is, counted in characters from 1; 0: where its field begins

    // What to write instead of so many lines, from that line on; none where that cannot be known. Lines of it are
    // separated by line feeds.
    std::optional<QString> suggestion = {};
    int replacedLines = 1;

    QString logged = {};      // what the daemon's log will have of it, where the text has other words
    bool isRejection = false; // the daemon leaves the line out, be the kind a warning

    // Field, text, advice and log as one, without a full stop: "start time: at midnight sharp it never starts; write
    // ...".
    [[nodiscard]] QString Sentence() const;
};

// What a check has found so far.
class Findings final
{
public:
    void Add(Finding finding);

    // Whether the daemon leaves out the line for it.
    [[nodiscard]] static bool IsError(const Finding& finding)
    {
        return finding.isRejection || FindingKinds::Row(finding.kind).isError;
    }

    // Nothing further is added of that line: what has been told is the cause of it all.
    void Close(int line) { m_closed.insert(line); }

    // Brings them into the order of the lines, and on a line into that of the kinds.
    void Sort();

    template <typename Function> void Change(const Function& change)
    {
        for (Finding& finding : m_all)
            change(finding);
    }

    [[nodiscard]] const std::vector<Finding>& All() const { return m_all; }
    [[nodiscard]] int Errors() const;
    [[nodiscard]] int Warnings() const { return static_cast<int>(m_all.size()) - Errors(); }

private:
    std::vector<Finding> m_all;
    QSet<int> m_closed;
};
