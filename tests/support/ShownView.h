#pragma once

#include "display/ImageView.h"

#include <QColor>
#include <QImage>
#include <QMenu>
#include <QWidget>

/// An ImageView in a window of its own, and what a person sees of it and does to it.
class ShownView
{
public:
    explicit ShownView(QSize size);

    QWidget& canvas() { return *view.findChild<QWidget*>("picMain"); }
    QMenu& menu() { return *view.findChild<QMenu*>("mnuRc"); }
    QImage shown() { return view.grab().toImage(); }
    QColor at(int x, int y) { return shown().pixelColor(x, y); }
    void click(int x, int y, Qt::MouseButton button = Qt::LeftButton);
    /// Turns the wheel by so many notches, away from the user where positive.
    void turnWheel(QPoint at, double notches);
    /// Presses the left button at the first place and moves it to the others; it stays pressed.
    void drag(const QList<QPoint>& way);
    /// Releases it there.
    void drop(QPoint at);

    QWidget window;
    ImageView view{&window};
};

/// Four quarters: red, green / blue, white.
QImage quarters(QSize size);

/// Whether both are the same colour, but for what a JPEG makes of it.
bool alike(const QColor& a, const QColor& b);
