// Pevora's viewer alone, with a view of 800 x 600 at the upper left of the screen, fetching one
// camera again and again: bench-viewer SECONDS ADDRESS [IMAGES], the pause between two fetches and
// the camera's address without its scheme. After so many images it fills the thumbnail strip, as
// a person would, before it goes on.

#include "shared/Timer.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTimer>

#include <functional>

namespace {

/// Shows the strip, and the picture again when all thumbnails are there; then calls `filled`.
void fillStrip(WebCam& cam, const std::function<void()>& filled)
{
    constexpr int lookMs = 20;
    auto* button = cam.findChild<ToolBar*>()->button(ToolBar::ToggleView);
    const auto* fill = cam.findChild<Timer*>(QStringLiteral("tmrFill"));
    auto* look = new QTimer(&cam);
    QObject::connect(look, &QTimer::timeout, &cam, [=] {
        if (fill->Enabled())
            return;
        look->deleteLater();
        button->click();
        filled();
    });
    button->click();
    look->start(lookMs);
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 3)
        return 2;
    const int fillAfter = arguments.value(3).toInt();

    const QTemporaryDir folder;
    WebCam cam(folder.path());
    cam.setWindowFlag(Qt::FramelessWindowHint);
    cam.setGeometry(0, 0, 1000, 800);
    cam.show();
    const auto* view = cam.findChild<QWidget*>(QStringLiteral("imgMain"));
    cam.resize(cam.size() + QSize(800, 600) - view->size());

    QTimer pause;
    pause.setSingleShot(true);
    pause.setInterval(int(arguments.at(1).toDouble() * 1000));
    QObject::connect(&pause, &QTimer::timeout, &cam, [&] { cam.Refresh(); });
    int images = 0;
    QObject::connect(&cam, &WebCam::Done, &cam, [&] {
        if (++images == fillAfter)
            fillStrip(cam, [&] { pause.start(); });
        else
            pause.start();
    });
    QObject::connect(&cam, &WebCam::Error, &cam,
                     [](const QString& message) { qFatal("%s", qPrintable(message)); });
    cam.setUrl(arguments.at(2));
    cam.Refresh();
    return QApplication::exec();
}
