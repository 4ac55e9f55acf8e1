#pragma once

#include "shared/Timer.h"

#include <QWidget>

/// Tells, once, that a window has been painted for the first time: for what the window needs and
/// nobody misses before. A window that is not painted for two seconds, because it starts minimised,
/// counts as painted.
class FirstPaint : public QObject
{
    Q_OBJECT

public:
    /// Owned by `window`.
    explicit FirstPaint(QWidget& window);

signals:
    /// What was painted is on its way to the screen.
    void Over();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void end();

    Timer m_tmrFirstPaint;
    bool m_over = false;
};
