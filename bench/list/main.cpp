// What Pevora does with a long camera list, and the milliseconds of processor time that it took:
//   bench-list load CAMERAS        the list from the disk, until it is on the screen
//   bench-list save CAMERAS        and back onto the disk
//   bench-list keystroke CAMERAS   one key in the goto bar, completing what no name begins with
// The cameras are in 500 categories. Loading is done once, as it is when the program starts; of the
// others it is the middle of several goes.

#include "camlist/CamList.h"
#include "shell/parts/GotoBar.h"

#include <QApplication>
#include <QFile>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QWindow>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

namespace {

constexpr int Categories = 500;
constexpr int Rounds = 7;

double processorMs()
{
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return double(used.tv_sec) * 1e3 + double(used.tv_nsec) / 1e6;
}

double onceMs(const std::function<void()>& one)
{
    const double before = processorMs();
    one();
    return processorMs() - before;
}

/// What `before` does each time is not counted.
double medianMs(
    const std::function<void()>& one, const std::function<void()>& before = [] {})
{
    QList<double> ms;
    for (int round = 0; round < Rounds; ++round) {
        before();
        ms.append(onceMs(one));
    }
    std::sort(ms.begin(), ms.end());
    return ms.at(Rounds / 2);
}

void writeList(const QString& path, int cameras)
{
    QByteArray line;
    for (int i = 0; i < cameras; ++i) {
        const QByteArray number = QByteArray::number(i);
        line += QByteArray(i ? "\xFF" : "") + "Category number " +
                QByteArray::number(i % Categories) + "\xFF" + "Camera of place " + number +
                "\xFFwww.example.org/cameras/place" + number + ".jpg";
    }
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(line + "\r\n") < 0)
        qFatal("bench: cannot write %s", qPrintable(path));
}

/// A list that nobody changed is not written: each save has a camera more.
double saveMs(CamList& list)
{
    int added = 0;
    return medianMs([&] { list.SaveFile(); },
                    [&] {
                        const QString number = QString::number(++added);
                        list.AddCam(QStringLiteral("Added ") + number,
                                    QStringLiteral("www.example.org/added") + number,
                                    QStringLiteral("Category number 0"));
                    });
}

void waitUntilShown(QWidget& window)
{
    window.show();
    while (!window.windowHandle()->isExposed())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::processEvents();
}

double keystrokeMs(const CamList& list, QWidget& window)
{
    GotoBar bar(list, &window);
    bar.show();
    const auto send = [&](QEvent::Type type) {
        QKeyEvent key(type, Qt::Key_X, Qt::NoModifier, QStringLiteral("x"));
        QApplication::sendEvent(&bar, &key);
    };
    // As far as all names go together, and one letter that none of them has there.
    bar.setEditText(QStringLiteral("camera of place "));
    return medianMs([&] {
        send(QEvent::KeyPress);
        send(QEvent::KeyRelease);
    });
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QString what = QApplication::arguments().value(1);
    const QTemporaryDir folder;
    writeList(folder.filePath(QStringLiteral("list.dat")),
              QApplication::arguments().value(2).toInt());

    QWidget window;
    window.resize(220, 600);
    CamList list(folder.path(), &window);
    list.setGeometry(window.rect());
    waitUntilShown(window);
    const auto load = [&] {
        list.LoadFile();
        QCoreApplication::processEvents();
    };

    double ms = 0;
    if (what == QLatin1String("load")) {
        ms = onceMs(load);
    } else {
        load();
        ms = what == QLatin1String("save") ? saveMs(list) : keystrokeMs(list, window);
    }
    std::printf("%f\n", ms);
    return 0;
}
