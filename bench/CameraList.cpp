#include "CameraList.h"

#include "Process.h"
#include "Table.h"

namespace {

constexpr int Rounds = 5;

/// What bench-list measured, in milliseconds; 0 where it failed.
double listMs(const QString& what, int cameras)
{
    QList<double> ms;
    for (int round = 0; round < Rounds; ++round) {
        Process process({QStringLiteral(BENCH_LIST), what, QString::number(cameras)});
        ms.append(process.output().trimmed().toDouble());
        if (!process.wait().succeeded)
            return 0;
    }
    return median(ms);
}

} // namespace

void benchCameraList(Table& table)
{
    constexpr double mostGrowth = 12;
    const struct
    {
        QString what;
        double mostMs; ///< for 100,000 cameras
    } works[] = {{QStringLiteral("load"), 1000},
                 {QStringLiteral("keystroke"), 20},
                 {QStringLiteral("save"), 500}};
    const QString cpu = QStringLiteral("ms CPU");
    for (const auto& [what, mostMs] : works) {
        double tenth = 0;
        for (const int cameras : {1'000, 10'000, 100'000}) {
            const double ms = listMs(what, cameras);
            const QString row = QStringLiteral("list %1, %L2").arg(what, QString::number(cameras));
            if (cameras > 1'000)
                table.add({row,
                           ms,
                           QStringLiteral("a tenth of the cameras"),
                           tenth,
                           cpu,
                           mostGrowth,
                           {}});
            if (cameras != 10'000)
                table.add(
                    {row, ms, QStringLiteral("the most that is allowed"), mostMs, cpu, 1.0, {}});
            tenth = ms;
        }
    }
}
