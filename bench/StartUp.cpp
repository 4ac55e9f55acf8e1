#include "StartUp.h"

#include "Process.h"
#include "Table.h"

#include <array>

namespace {

constexpr int Rounds = 15;

/// Milliseconds to the first paint; 0 where the program tells none.
double firstPaintMs(const QStringList& command)
{
    const double started = nowMs();
    Process process(command);
    const double painted = process.output().trimmed().toDouble();
    return process.wait().succeeded && painted > started ? painted - started : 0;
}

} // namespace

void benchStartUp(Table& table)
{
    const QString row = QStringLiteral("start-up to first paint");
    const QString window = QStringLiteral(BENCH_WINDOW);
    const std::array<QStringList, 3> commands{QStringList{QStringLiteral(BENCH_PEVORA)},
                                              QStringList{window, QStringLiteral("labelled")},
                                              QStringList{window}};
    std::array<QList<double>, 3> times;
    for (int round = 0; round < Rounds; ++round) {
        for (std::size_t i = 0; i < commands.size(); ++i) {
            times[i].append(firstPaintMs(commands[i]));
            if (times[i].last() <= 0)
                return table.addFailure(row, QStringLiteral("a program painted nothing"));
        }
    }
    const double pevora = median(times[0]);
    const QString unit = QStringLiteral("ms");
    table.add(
        {row, pevora, QStringLiteral("window with label and menu"), median(times[1]), unit, 1.15});
    table.add({row, pevora, QStringLiteral("bare Qt main window"), median(times[2]), unit});
}
