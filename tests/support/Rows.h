#pragma once

#include <QTest>

#include <type_traits>

// The rows of a test function as a table of a struct whose first member is the row's name:
//
//     void Splits_data() { AddRows(LINES); }    // a constant table that outlives the test
//     void Splits();                            // const Line& row = Row<Line>();
//
// Each row is a row of the test library too: named in its output, and run by itself when asked for.
template <typename Table> void AddRows(const Table& table)
{
    using Entry = std::remove_cvref_t<decltype(*std::begin(table))>;
    QTest::addColumn<const Entry*>("row");
    for (const Entry& entry : table)
        QTest::newRow(entry.name) << &entry;
}

// The row that the test function runs with. Ends the test program when its rows are of another type.
template <typename Entry> const Entry& Row()
{
    QFETCH(const Entry*, row);
    return *row;
}
