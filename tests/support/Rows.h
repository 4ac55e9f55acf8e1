#pragma once

#include <QTest>

#include <string>

/// The rows of a test's data, as a table:
///
///     void addressesAreJoined_data()
///     {
///         const Rows<QString, bool> row("address", "isSecure");
///         row("with a port", "https://host:8080/", true);
///     }
template<typename... Cells>
class Rows
{
public:
    /// The columns' names, by which the test fetches its cells.
    template<typename... Names>
    explicit Rows(Names... names)
    {
        static_assert(sizeof...(Names) == sizeof...(Cells));
        (QTest::addColumn<Cells>(names), ...);
    }

    /// One row; `name` tells it from the others.
    void operator()(const std::string& name, const Cells&... cells) const
    {
        auto& row = QTest::newRow(name.c_str());
        ((row << cells), ...);
    }
};
