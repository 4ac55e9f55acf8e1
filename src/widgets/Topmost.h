#pragma once

class QWidget;

/// Makes a top-level window stay above all others, or releases it. Returns whether that was done:
/// a widget inside another window has no place among the windows and is left alone.
///
/// A window that the system does not know yet is created (but not shown). A shown one stays as it
/// is: it is neither hidden nor made anew, as QWidget::setWindowFlag would do, and keeps its place,
/// its size and its focus. On X11 Qt exchanges the system's window, with all that belongs to it,
/// when a window whose setting was changed is shown again after it was hidden; QWidget::winId then
/// goes on giving the old number, QWindow::winId gives the right one.
bool setTopmost(QWidget& window, bool topmost);
