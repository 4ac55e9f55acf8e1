#include "support/ShownView.h"

#include "support/Waiting.h"

#include <QApplication>
#include <QPainter>
#include <QWheelEvent>

#include <cmath>

ShownView::ShownView(QSize size)
{
    constexpr QSize windowSize(1000, 800);
    window.resize(windowSize);
    view.resize(size);
    window.show();
    if (!waitForExposed(&window))
        qFatal("the window does not show");
}

void ShownView::click(int x, int y, Qt::MouseButton button)
{
    QTest::mouseClick(&canvas(), button, {}, QPoint(x, y));
}

void ShownView::turnWheel(QPoint at, double notches)
{
    constexpr double perNotch = QWheelEvent::DefaultDeltasPerStep;
    QWheelEvent event(at, canvas().mapToGlobal(QPointF(at)), {},
                      QPoint(0, qRound(notches * perNotch)), Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&canvas(), &event);
}

void ShownView::drag(const QList<QPoint>& way)
{
    QTest::mousePress(&canvas(), Qt::LeftButton, {}, way.first());
    for (const QPoint& at : way.mid(1)) {
        QMouseEvent event(QEvent::MouseMove, at, canvas().mapToGlobal(QPointF(at)), Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&canvas(), &event);
    }
}

void ShownView::drop(QPoint at)
{
    QTest::mouseRelease(&canvas(), Qt::LeftButton, {}, at);
}

QImage quarters(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const int x = size.width() / 2;
    const int y = size.height() / 2;
    painter.fillRect(0, 0, x, y, Qt::red);
    painter.fillRect(x, 0, x, y, Qt::green);
    painter.fillRect(0, y, x, y, Qt::blue);
    painter.fillRect(x, y, x, y, Qt::white);
    return image;
}

bool alike(const QColor& a, const QColor& b)
{
    constexpr int jpegError = 12;
    return std::abs(a.red() - b.red()) < jpegError && std::abs(a.green() - b.green()) < jpegError &&
           std::abs(a.blue() - b.blue()) < jpegError;
}
