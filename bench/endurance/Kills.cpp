// Kills the program at random moments of its work and of its end, and reads back what it left:
//   bench-kills PROGRAM FOLDER KILLS [SEED]
// PROGRAM is the built victim in a folder of its own, FOLDER an empty one. Started by bench/kills.

#include "ReadBack.h"
#include "Victim.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Against a program that hangs.
constexpr int HangMs = 120'000;

/// Pictures that do not compress well, so that a save has some way to go.
void makePictures(const QString& folder, QRandomGenerator& random)
{
    constexpr int quality = 90;
    for (int i = 0; i < victim::Pictures; ++i) {
        QImage image(victim::WidthPx, victim::HeightPx, QImage::Format_RGB32);
        random.fillRange(reinterpret_cast<quint32*>(image.bits()), image.sizeInBytes() / 4);
        if (!image.save(QDir(folder).filePath(victim::sourceName(i)), "jpeg", quality))
            qFatal("bench: cannot write a picture");
    }
}

/// How a run of the program went.
struct Run
{
    bool killed = false;
    bool ended = false; ///< by itself, with status 0
    qint64 workNs = 0;
    qint64 exitNs = 0;
};

Run runOf(const QString& program, const QStringList& words)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PEVORA_VICTIM"_s, words.join(u' '));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer clock;
    qint64 workAt = 0;
    qint64 exitAt = 0;
    clock.start();
    process.start(program, QStringList());
    while (process.waitForReadyRead(HangMs)) {
        const QByteArray told = process.readAll();
        if (told.contains("work"))
            workAt = clock.nsecsElapsed();
        if (told.contains("exit"))
            exitAt = clock.nsecsElapsed();
    }
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(HangMs))
        qFatal("bench: the program hangs");
    Run run;
    const bool crashed = process.exitStatus() == QProcess::CrashExit;
    run.killed = crashed && process.exitCode() == SIGKILL;
    run.ended = !crashed && process.exitCode() == 0;
    run.workNs = exitAt - workAt;
    run.exitNs = clock.nsecsElapsed() - exitAt;
    return run;
}

/// What a moment is called, how long it takes, and how often it was hit.
struct Moment
{
    QString name;
    qint64 spanNs = 0;
    int kills = 0;
};

int report(const ReadBack& back, const std::array<Moment, 2>& moments, int late, int faults,
           int mostLeftOver)
{
    std::printf("%d killed within %.0f ms of work, %d within %.0f ms of exit; %d had ended before\n"
                "read back whole: %d lists, %d preferences (%d of them new), %d images, %d movies\n"
                "%d faults; files left beside them: %d at most\n",
                moments[0].kills, double(moments[0].spanNs) / 1e6, moments[1].kills,
                double(moments[1].spanNs) / 1e6, late, back.lists, back.preferences,
                back.newPreferences, back.images, back.movies, faults, mostLeftOver);
    return faults == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[])
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    const QString program = arguments.value(1);
    const QString saved = arguments.value(2);
    const int kills = arguments.value(3).toInt();
    if (kills < 1 || !QFileInfo(program).isExecutable() || !QDir(saved).exists())
        qFatal("bench: bench-kills PROGRAM FOLDER KILLS [SEED]");
    const quint32 seed =
        arguments.size() > 4 ? arguments.at(4).toUInt() : QRandomGenerator::global()->generate();
    std::printf("seed %u\n", seed);
    QRandomGenerator random(seed);
    makePictures(saved, random);

    ReadBack back(QFileInfo(program).path(), saved);
    back.prepare();
    const auto words = [&](const QString& moment, qint64 ns, int run) {
        return QStringList{moment,
                           QString::number(ns),
                           QString::number(run),
                           QString::number(back.firstCamera()),
                           QString::number(back.lastCamera()),
                           saved};
    };
    int run = 1;
    const Run whole = runOf(program, words(u"never"_s, 0, run));
    if (!whole.ended)
        qFatal("bench: the program does not end well by itself");
    back.learnPreferences();
    std::array<Moment, 2> moments{Moment{u"work"_s, whole.workNs}, Moment{u"exit"_s, whole.exitNs}};
    int late = 0;
    int mostLeftOver = 0;
    QStringList faults = back.faults(run);
    while (moments[0].kills + moments[1].kills < kills && faults.isEmpty()) {
        ++run;
        Moment& moment = moments[moments[0].kills > moments[1].kills ? 1 : 0];
        const qint64 ns = 1 + qint64(random.generateDouble() * double(moment.spanNs));
        const Run one = runOf(program, words(moment.name, ns, run));
        if (!one.killed && !one.ended)
            faults += u"the program failed"_s;
        faults += back.faults(run);
        moment.kills += one.killed;
        late += one.ended;
        mostLeftOver = std::max(mostLeftOver, back.leftOver());
        for (const QString& fault : faults)
            std::printf("killed %.3f ms after %s began: %s\n", double(ns) / 1e6,
                        qPrintable(moment.name), qPrintable(fault));
        std::fflush(stdout);
    }
    ++run;
    if (faults.isEmpty() &&
        (!runOf(program, words(u"never"_s, 0, run)).ended || !back.faults(run).isEmpty())) {
        faults += u"the last run failed"_s;
        std::puts(qPrintable(faults.last()));
    }
    return report(back, moments, late, int(faults.size()), mostLeftOver);
}
