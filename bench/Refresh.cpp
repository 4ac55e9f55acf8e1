#include "Refresh.h"

#include "PictureServer.h"
#include "Pictures.h"
#include "Process.h"
#include "Table.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <QTimer>

#include <cmath>
#include <functional>
#include <optional>

namespace {

constexpr int Rounds = 3;
/// Refreshes of one program in a round. The first ones count not: its start is part of them.
constexpr int FirstCounted = 3;
constexpr int Refreshes = 12;
constexpr int PatienceMs = 10'000;
/// The middle of both programs' pictures is within the mark's reach from here.
constexpr QPoint InTheMark{400, 320};

constexpr QSize viewSize{800, 600};
const QString reloadSeconds = QStringLiteral("0.1");

struct Contender
{
    QString name;
    QStringList command;
    QList<double> cpuMs = {};
};

bool waitUntil(const std::function<bool()>& condition)
{
    QElapsedTimer waited;
    waited.start();
    while (!condition()) {
        if (waited.elapsed() > PatienceMs)
            return false;
        QEventLoop loop;
        QTimer::singleShot(2, &loop, &QEventLoop::quit);
        loop.exec();
    }
    return true;
}

bool isOnScreen(const QColor& mark)
{
    constexpr int tolerance = 40;
    const QPixmap seen =
        QGuiApplication::primaryScreen()->grabWindow(0, InTheMark.x(), InTheMark.y(), 1, 1);
    const QColor colour = seen.toImage().pixelColor(0, 0);
    return std::abs(colour.red() - mark.red()) < tolerance &&
           std::abs(colour.green() - mark.green()) < tolerance &&
           std::abs(colour.blue() - mark.blue()) < tolerance;
}

/// Starts `command` on the pictures and calls `asked` with it at each request, until it has asked
/// `times` times. False where a picture did not reach the screen before the next was asked for.
bool watch(const QStringList& command, PictureServer& server, const Pictures& pictures, int times,
           const std::function<void(int, Process&)>& asked)
{
    server.serve(&pictures);
    QList<bool> shown;
    Process process(command);
    const auto connection = QObject::connect(&server, &PictureServer::Asked, &server, [&] {
        asked(server.answers(), process);
        shown.append(false);
    });
    const bool over = waitUntil([&] { return server.answers() > 0; }) && waitUntil([&] {
                          if (isOnScreen(Pictures::mark(server.answers() - 1)))
                              shown.last() = true;
                          return server.answers() >= times && shown.last();
                      });
    QObject::disconnect(connection);
    shown.removeFirst(); // feh asks twice before it shows anything
    return over && process.isRunning() && !shown.contains(false);
}

} // namespace

void benchRefresh(Table& table, PictureServer& server, const Pictures& pictures)
{
    const QString size =
        QStringLiteral("%1x%2").arg(pictures.size().width()).arg(pictures.size().height());
    const QString url = QStringLiteral("http://") + server.address();
    const QString row = QStringLiteral("refresh %1").arg(size);
    Contender pevora{QStringLiteral("Pevora"),
                     {QStringLiteral(BENCH_VIEWER), reloadSeconds, server.address()}};
    // The cheapest way in which feh shows such a picture whole: only a smaller one needs the zoom.
    const bool isSmall = pictures.size().width() < viewSize.width();
    Contender feh{QStringLiteral("feh --reload"),
                  {QStringLiteral("feh"), QStringLiteral("--reload"), reloadSeconds,
                   QStringLiteral("--geometry"), QStringLiteral("800x600+0+0"),
                   QStringLiteral("--borderless"), QStringLiteral("--scale-down"),
                   isSmall ? QStringLiteral("--auto-zoom") : QStringLiteral("--quiet"), url}};
    QList<double> djpegMs;
    for (int round = 0; round < Rounds; ++round) {
        for (Contender* contender : {&feh, &pevora}) {
            double last = 0;
            const bool seen = watch(contender->command, server, pictures, Refreshes,
                                    [&](int number, Process& process) {
                                        const double now = process.cpuMs();
                                        if (number >= FirstCounted)
                                            contender->cpuMs.append(now - last);
                                        last = now;
                                    });
            if (!seen)
                return table.addFailure(row, contender->name +
                                                 QStringLiteral(": a picture stayed away"));
        }
        for (const QString& file : pictures.files()) {
            const Cost cost = costOf({QStringLiteral("djpeg"), QStringLiteral("-outfile"),
                                      QStringLiteral("/dev/null"), file});
            if (!cost.succeeded)
                return table.addFailure(row, QStringLiteral("djpeg failed"));
            djpegMs.append(cost.cpuMs);
        }
    }
    const double ours = median(pevora.cpuMs);
    const QString cpu = QStringLiteral("ms CPU");
    const bool isLarge = pictures.size().width() > 1920;
    const auto aim = [&](double large, std::optional<double> middle) {
        std::optional<double> result;
        if (isLarge)
            result = large;
        else if (pictures.size().width() == 1920)
            result = middle;
        return result;
    };
    const QString files = QStringLiteral("files of %1 kB").arg(pictures.meanKilobytes(), 0, 'f', 0);
    table.add({row, ours, feh.name, median(feh.cpuMs), cpu, aim(0.5, 0.75), files});
    table.add({row,
               ours,
               QStringLiteral("djpeg, whole"),
               median(djpegMs),
               cpu,
               aim(1.0, std::nullopt),
               {}});
}

void benchMemory(Table& table, PictureServer& server, const Pictures& pictures)
{
    constexpr int historyLength = 45;
    constexpr double mostMegabytes = 200;
    double resident = 0;
    // When the next one is asked for, 45 have been shown, and their thumbnails.
    const bool seen = watch({QStringLiteral(BENCH_VIEWER), reloadSeconds, server.address(),
                             QString::number(historyLength)},
                            server, pictures, historyLength + 1, [&](int number, Process& process) {
                                if (number == historyLength)
                                    resident = process.residentMegabytes();
                            });
    const QString row = QStringLiteral("memory after 45 images");
    if (!seen)
        return table.addFailure(row, QStringLiteral("a picture stayed away"));
    table.add({row, resident, QStringLiteral("the most that is allowed"), mostMegabytes,
               QStringLiteral("MB"), 1.0,
               QStringLiteral("%1x%2").arg(pictures.size().width()).arg(pictures.size().height())});
}
