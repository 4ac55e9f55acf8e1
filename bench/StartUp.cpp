#include "StartUp.h"

#include "Process.h"
#include "Table.h"

#include <array>

namespace {

constexpr int Rounds = 40;

/// Milliseconds of processor time up to the first paint, with which the program is over; 0 where it
/// tells none.
double firstPaintMs(const QStringList& command)
{
    Process process(command);
    const bool painted = process.output().trimmed() == "painted";
    const Cost cost = process.wait();
    return painted && cost.succeeded ? cost.cpuMs : 0;
}

} // namespace

void benchStartUp(Table& table)
{
    const QString row = QStringLiteral("start-up to first paint");
    const QString window = QStringLiteral(BENCH_WINDOW);
    const std::array<QStringList, 3> commands{QStringList{QStringLiteral(BENCH_PEVORA)},
                                              QStringList{window, QStringLiteral("labelled")},
                                              QStringList{window}};
    std::array<QList<double>, 3> costs;
    for (int round = 0; round < Rounds; ++round) {
        for (std::size_t i = 0; i < commands.size(); ++i) {
            costs[i].append(firstPaintMs(commands[i]));
            if (costs[i].last() <= 0)
                return table.addFailure(row, QStringLiteral("a program painted nothing"));
        }
    }
    const double pevora = median(costs[0]);
    const QString unit = QStringLiteral("ms CPU");
    table.add(
        {row, pevora, QStringLiteral("window with label and menu"), median(costs[1]), unit, 1.15});
    table.add({row, pevora, QStringLiteral("bare Qt main window"), median(costs[2]), unit});
}
