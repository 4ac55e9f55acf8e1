#include "Table.h"

#include <QTextStream>

#include <algorithm>

double median(QList<double> values)
{
    if (values.isEmpty())
        return 0;
    std::sort(values.begin(), values.end());
    const auto middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

bool Table::print() const
{
    QTextStream out(stdout);
    const auto measure = [](double value, const QString& unit) {
        int decimals = 0;
        if (value < 100)
            decimals = value < 1 ? 3 : 1;
        return QStringLiteral("%1 %2").arg(value, 0, 'f', decimals).arg(unit);
    };
    const auto line = [&](const QStringList& cells) {
        out << cells[0].leftJustified(25) << cells[1].rightJustified(11) << "   "
            << cells[2].leftJustified(29) << cells[3].rightJustified(11)
            << cells[4].rightJustified(8) << cells[5].rightJustified(8) << "  " << cells[6] << '\n';
    };
    using Texts = QStringList;
    line(Texts{QStringLiteral("what"),
               QStringLiteral("Pevora"),
               QStringLiteral("against"),
               {},
               QStringLiteral("ratio"),
               QStringLiteral("aim"),
               {}});
    bool measured = true;
    for (const Row& row : m_rows) {
        if (row.theirs <= 0 || row.ours <= 0) {
            measured = false;
            line(Texts{row.what,
                       QStringLiteral("-"),
                       row.against,
                       {},
                       QStringLiteral("-"),
                       {},
                       QStringLiteral("NOT MEASURED")});
            continue;
        }
        const double ratio = row.ours / row.theirs;
        const bool missed = row.aim && ratio > *row.aim;
        QString verdict = missed ? QStringLiteral("MISSED") : QString();
        if (row.aim && !missed)
            verdict = QStringLiteral("met");
        line(Texts{row.what, measure(row.ours, row.unit), row.against,
                   measure(row.theirs, row.unit), QString::number(ratio, 'f', 2),
                   row.aim ? QString::number(*row.aim, 'f', 2) : QStringLiteral("-"),
                   QStringLiteral("%1 %2").arg(verdict, -7).arg(row.remark).trimmed()});
    }
    return measured;
}
