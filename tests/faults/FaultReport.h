#pragma once

#include "Expectation.h"

#include <QList>

// What was found for one request, for the document: each cell of the matrix comes from a run.
class FaultReport final
{
public:
    explicit FaultReport(const Request& request);

    // What a day with that fault has brought; taskLines: the task's records as they were found.
    void Add(const Fault& fault, const Expectation& expected, const QStringList& taskLines);

    // The fault cannot happen to the request: the daemon listens to no signal of that peer.
    void AddIdle(const Fault& fault);

    // Writes the row of the table and the section of that number into the folder of results.
    void Write(int number) const;

    // Writes the table's head and the faults' meanings there.
    static void WriteLegend();

private:
    struct Cell
    {
        QString fault;
        QString symbol; // as the legend tells
        QStringList lines;
    };

    [[nodiscard]] QString Row() const;
    [[nodiscard]] QString Section() const;

    const Request m_request;
    QList<Cell> m_cells;
};
