#include "StartUp.h"

#include "Process.h"
#include "Table.h"

namespace {

constexpr int Rounds = 15;

/// Milliseconds to the first paint; 0 where the program tells none.
double firstPaintMs(const QString& program)
{
    const double started = nowMs();
    Process process({program});
    const double painted = process.output().trimmed().toDouble();
    return process.wait().succeeded && painted > started ? painted - started : 0;
}

} // namespace

void benchStartUp(Table& table)
{
    const QString row = QStringLiteral("start-up to first paint");
    QList<double> pevora;
    QList<double> window;
    for (int round = 0; round < Rounds; ++round) {
        pevora.append(firstPaintMs(QStringLiteral(BENCH_PEVORA)));
        window.append(firstPaintMs(QStringLiteral(BENCH_WINDOW)));
        if (pevora.last() <= 0 || window.last() <= 0)
            return table.addFailure(row, QStringLiteral("a program painted nothing"));
    }
    table.add({row,
               median(pevora),
               QStringLiteral("bare Qt main window"),
               median(window),
               QStringLiteral("ms"),
               1.5,
               {}});
}
