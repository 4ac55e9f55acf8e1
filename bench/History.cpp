#include "History.h"

#include "Pictures.h"
#include "Process.h"
#include "Table.h"

namespace {

constexpr int Rounds = 3;
constexpr int HistoryLength = 45;

QStringList frames(const Pictures& pictures)
{
    QStringList files;
    for (int i = 0; i < HistoryLength; ++i)
        files.append(pictures.files().at(i % Pictures::Count));
    return files;
}

/// What bench-history measured; 0 where it failed.
double historyMs(const QStringList& arguments)
{
    Process process(QStringList{QStringLiteral(BENCH_HISTORY)} + arguments);
    const double measured = process.output().trimmed().toDouble();
    return process.wait().succeeded ? measured : 0;
}

/// The processor time of `command`, a shell's, over each of `files` in turn.
double shellMs(const QString& command, const QStringList& files)
{
    const QString loop = QStringLiteral("set -e; for f; do %1 >/dev/null; done").arg(command);
    const Cost cost =
        costOf(QStringList{QStringLiteral("sh"), QStringLiteral("-c"), loop, QStringLiteral("sh")} +
               files);
    return cost.succeeded ? cost.cpuMs : 0;
}

} // namespace

void benchThumbnails(Table& table, const Pictures& pictures)
{
    constexpr double mostMs = 1500;
    QList<double> ms;
    for (int round = 0; round < Rounds; ++round)
        ms.append(historyMs(QStringList{QStringLiteral("thumbnails")} + frames(pictures)));
    table.add({QStringLiteral("thumbnails, 45 images"), median(ms),
               QStringLiteral("the most that is allowed"), mostMs, QStringLiteral("ms"), 1.0,
               QStringLiteral("%1x%2").arg(pictures.size().width()).arg(pictures.size().height())});
}

void benchMovie(Table& table, const Pictures& pictures, const QString& folder)
{
    constexpr double most = 1.3;
    const QString movie = folder + QStringLiteral("/movie.pvm");
    const QStringList files = frames(pictures);
    QList<double> save;
    QList<double> load;
    QList<double> transcode;
    QList<double> decode;
    for (int round = 0; round < Rounds; ++round) {
        save.append(historyMs(QStringList{QStringLiteral("save"), movie} + files));
        transcode.append(shellMs(QStringLiteral("djpeg \"$f\" | cjpeg -quality 75"), files));
        load.append(historyMs({QStringLiteral("load"), movie}));
        decode.append(shellMs(QStringLiteral("djpeg -scale 1/8 \"$f\""), files));
    }
    const QString cpu = QStringLiteral("ms CPU");
    const QString remark =
        QStringLiteral("%1x%2").arg(pictures.size().width()).arg(pictures.size().height());
    table.add({QStringLiteral("movie save, 45 frames"), median(save),
               QStringLiteral("djpeg | cjpeg -quality 75"), median(transcode), cpu, most, remark});
    table.add({QStringLiteral("movie load, 45 frames"), median(load),
               QStringLiteral("djpeg -scale 1/8"), median(decode), cpu, most, remark});
}
