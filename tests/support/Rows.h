#pragma once

#include <QList>
#include <QTest>

#include <tuple>
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

// The same where a struct would say no more than the names in the test function do:
//
//     void Splits_data();     // Rows<QString, qsizetype>::Add({{"an empty line", u""_s, 0}, ...});
//     void Splits();          // const auto& [line, count] = Rows<QString, qsizetype>::Current();
//
// The first of each row is its name. Current returns a single column as it is.
template <typename... Columns> struct Rows
{
    using Entry = std::tuple<QByteArray, Columns...>;
    using Values = std::tuple<Columns...>;

    static void Add(const QList<Entry>& rows)
    {
        QTest::addColumn<Values>("row");
        for (const Entry& row : rows)
            std::apply([](const QByteArray& name,
                          const Columns&... columns) { QTest::newRow(name.constData()) << Values(columns...); },
                       row);
    }

    static auto Current()
    {
        QFETCH(Values, row);
        if constexpr (sizeof...(Columns) == 1)
            return std::get<0>(row);
        else
            return row;
    }
};
