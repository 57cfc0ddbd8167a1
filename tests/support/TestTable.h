#pragma once

#include <QTest>

/// The rows of a data function: columns of these types under the names given, into which the cells are converted.
template <class... Columns>
class TestTable {
public:
    template <class... Names>
    explicit TestTable(Names... names) {
        static_assert(sizeof...(Names) == sizeof...(Columns));
        (QTest::addColumn<Columns>(names), ...);
    }

    void row(const char* tag, const Columns&... cells) const { (QTest::newRow(tag) << ... << cells); }
};
