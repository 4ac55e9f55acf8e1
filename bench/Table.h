#pragma once

#include <QList>
#include <QString>

#include <optional>

/// The middle of `values`; 0 of none.
double median(QList<double> values);

/// What was measured, printed as rows of one table.
class Table
{
public:
    /// What is measured: `ours` against `theirs`, both in `unit`, the smaller the better.
    /// `aim` is the largest ratio that is good enough, where there is an aim.
    struct Row
    {
        QString what;
        double ours = 0;
        QString against;
        double theirs = 0;
        QString unit = {};
        std::optional<double> aim = std::nullopt;
        QString remark = {};
    };

    void add(const Row& row) { m_rows.append(row); }
    /// A row that could not be measured still has its place, with the reason.
    void addFailure(const QString& what, const QString& why) { m_rows.append({what, 0, why, 0}); }

    /// Prints all rows to standard output. True where all were measured, be it that
    /// one missed its aim.
    bool print() const;

private:
    QList<Row> m_rows;
};
