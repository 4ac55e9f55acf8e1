#include "support/ShownCamera.h"

#include "display/ImageView.h"
#include "support/Pictures.h"
#include "support/ScriptedServer.h"
#include "support/TimeSeam.h"
#include "support/Waiting.h"
#include "viewer/fetch/Fetch.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"
#include "widgets/ElidedLabel.h"

#include <QEventLoop>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <cmath>

namespace {

constexpr QSize WindowSize(700, 500);

bool isLike(const QColor& seen, const QColor& wanted)
{
    constexpr int jpegError = 12;
    return std::abs(seen.red() - wanted.red()) <= jpegError &&
           std::abs(seen.green() - wanted.green()) <= jpegError &&
           std::abs(seen.blue() - wanted.blue()) <= jpegError;
}

} // namespace

ShownCamera::ShownCamera()
{
    connect(&cam, &WebCam::ImageChange, this,
            [this](const QString&, const QString& url) { m_told << "change " + url; });
    connect(&cam, &WebCam::Error, this, [this](const QString& text) {
        m_told << "error " + text;
        m_over = true;
    });
    connect(&cam, &WebCam::Done, this, [this] {
        m_told << "done";
        m_over = true;
    });
    cam.resize(WindowSize);
    cam.show();
    if (!waitForExposed(&cam))
        qFatal("the window does not appear");
}

void ShownCamera::start(const QString& url)
{
    m_told.clear();
    m_over = false;
    cam.Refresh(url);
}

Outcome ShownCamera::end()
{
    if (!m_over) {
        QEventLoop loop;
        connect(&cam, &WebCam::Error, &loop, &QEventLoop::quit);
        connect(&cam, &WebCam::Done, &loop, &QEventLoop::quit);
        QTimer::singleShot(HangMs, &loop, &QEventLoop::quit);
        loop.exec();
    }
    if (!m_over)
        m_told << "not over";
    return {m_told, status()};
}

Outcome ShownCamera::fetch(const QString& url)
{
    start(url);
    return end();
}

Outcome ShownCamera::fetchUntilSilence(const QString& url, qsizetype bytes)
{
    qsizetype received = 0;
    const auto count = connect(&part<Fetch>(""), &Fetch::ChunkReceived, this,
                               [&](const QByteArray& chunk) { received += chunk.size(); });
    start(url);
    if (!waitFor([&] { return received >= bytes; }))
        qWarning("%lld bytes have come", static_cast<long long>(received));
    disconnect(count);
    if (m_over)
        m_told << "over before the silence";
    timer("tmrOut").elapse();
    return end();
}

QString ShownCamera::status()
{
    return part<ElidedLabel>("lbl").Tag();
}

bool ShownCamera::busy()
{
    timer("tmrFalse").setEnabled(true);
    timer("tmrFalse").elapse();
    return part<ElidedLabel>("lbl").isVisible();
}

QByteArray ShownCamera::picture()
{
    return part<ImageView>("imgMain").Picture().bytes();
}

QColor ShownCamera::middle()
{
    return cam.grab(QRect(WindowSize.width() / 2, WindowSize.height() / 2, 1, 1))
        .toImage()
        .pixelColor(0, 0);
}

QString ShownCamera::caption()
{
    return part<QLabel>("lblPic").text();
}

void ShownCamera::chooseFromMenu(int button, int item)
{
    const auto* face = part<ToolBar>("tbMain").button(button);
    face->findChild<QMenu*>()->actions()[item - 1]->trigger();
}

QList<int> ShownCamera::enabledButtons()
{
    QList<int> enabled;
    for (const int index : AllButtons) {
        if (part<ToolBar>("tbMain").button(index)->isEnabled())
            enabled << index;
    }
    return enabled;
}

void ShownCamera::press(int button)
{
    QTest::mouseClick(part<ToolBar>("tbMain").button(button), Qt::LeftButton, {}, QPoint(12, 14));
}

Timer& ShownCamera::timer(const char* name)
{
    return timerOf(cam, name);
}

QString ShownCamera::trouble()
{
    const QColor colour = QColor::fromHsv(m_pictures++ * 37 % 360, 255, 255);
    const QByteArray good = encodedPicture({40, 30}, colour);
    ScriptedServer server;
    server.listen();
    server.play(pictureAnswer(good));
    server.play(Script{{}, Script::End::KeepOpen});

    const Outcome outcome = fetch(server.url());
    if (outcome.told != QStringList{"change http://127.0.0.1/a.jpg", "done"})
        return "a good fetch: " + outcome.told.join(", ") + outcome.status;
    if (picture() != good)
        return "another picture";
    if (const QColor seen = middle(); !isLike(seen, colour))
        return "on screen " + seen.name() + ", not " + colour.name();
    if (busy())
        return "busy after a good fetch";

    start();
    if (!waitFor([&] { return server.requests().size() == 2; }))
        return "no second request";
    if (!busy())
        return "not busy during a fetch";
    press(ToolBar::Stop);
    if (m_told != QStringList{"done"} || status() != "  Stopped")
        return "the stop button: " + m_told.join(", ") + status();
    if (busy())
        return "busy after the stop button";
    if (!waitFor([&] { return server.openConnections() == 0; }))
        return "the connection stays open";
    return {};
}
