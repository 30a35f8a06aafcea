#pragma once

#include "literal.h"

#include <QtTest>

#include <type_traits>

/// The cells of a line in a test table, with "|" between them.
inline QStringList Cells(const char* line)
{
    return QString::fromUtf8(line).split(QLatin1Char('|'));
}

/// A text in a test table, which may be written as a literal.
struct TextCell : QString
{
    TextCell(const char* text) : QString(QString::fromUtf8(text)) {}
    TextCell(const QString& text) : QString(text) {}
};
template <typename T>
using Cell = std::conditional_t<std::is_same_v<T, QString>, TextCell, T>;

/// Names the columns of a test table; what it returns adds a row.
template <typename... Cells, typename... Names>
auto Columns(Names... names)
{
    (QTest::addColumn<Cells>(names), ...);
    return [](const char* name, const Cell<Cells>&... cells) {
        QTestData& data = QTest::newRow(name);
        ((data << static_cast<const Cells&>(cells)), ...);
    };
}
