// What Pevora does with a full history, done once, and the milliseconds that it took:
//   bench-history thumbnails FILE...      until all are on screen, by the clock
//   bench-history save MOVIE FILE...      processor time
//   bench-history load MOVIE              processor time

#include "display/ThumbView.h"
#include "shared/Timer.h"
#include "viewer/movie/MovieReader.h"
#include "viewer/movie/MovieWriter.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QPixmap>
#include <QScreen>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>

#include <cstdio>
#include <ctime>

namespace {

constexpr int MostMs = 30'000;

ImageList imagesOf(const QStringList& files)
{
    ImageList images;
    for (const QString& path : files) {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("bench: cannot read %s", qPrintable(path));
        images.Add(Still::fromBytes(file.readAll(), QSize(1, 1)));
    }
    return images;
}

double processorMs()
{
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return double(used.tv_sec) * 1e3 + double(used.tv_nsec) / 1e6;
}

double thumbnailsMs(const ImageList& images)
{
    ThumbView strip;
    strip.setWindowFlag(Qt::FramelessWindowHint);
    strip.setGeometry(0, 0, 1000, 1000);
    strip.show();
    while (!strip.windowHandle()->isExposed())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    auto* fill = strip.findChild<Timer*>(QStringLiteral("tmrFill"));

    QElapsedTimer clock;
    clock.start();
    strip.ShowImages(images);
    while (fill->Enabled())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    // What was decoded last is painted, and the X server has it all.
    strip.repaint();
    strip.screen()->grabWindow(0, 0, 0, 1, 1);
    return double(clock.nsecsElapsed()) / 1e6;
}

double movieMs(MovieJob& job)
{
    QEventLoop loop;
    QObject::connect(&job, &MovieJob::Failed, [] { qFatal("bench: the movie failed"); });
    QObject::connect(&job, &MovieJob::Finished, &loop, &QEventLoop::quit);
    const double before = processorMs();
    job.begin();
    loop.exec();
    return processorMs() - before;
}

double resultOf(const QStringList& arguments)
{
    const QString what = arguments.value(1);
    if (what == QLatin1String("thumbnails"))
        return thumbnailsMs(imagesOf(arguments.mid(2)));
    const QTemporaryDir folder;
    const QString movie = arguments.value(2);
    if (what == QLatin1String("save")) {
        const ImageList images = imagesOf(arguments.mid(3));
        MovieWriter writer(movie, folder.path(), images);
        return movieMs(writer);
    }
    MovieReader reader(movie, folder.path());
    return movieMs(reader);
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QTimer::singleShot(MostMs, [] { qFatal("bench: no end"); });
    std::printf("%.3f\n", resultOf(QApplication::arguments()));
    return 0;
}
