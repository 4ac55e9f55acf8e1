#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

class MainArea;
class QMainWindow;

/// The picture alone on the whole screen: without menus, list, toolbar, goto bar and status line.
/// Escape leads back, as does a window manager that gives the window its frame again; everything is
/// then as it was before, the window's place and a maximised state included.
class FullScreen : public QObject
{
    Q_OBJECT

public:
    /// Owned by `window`, which shows `area` below its menu bar.
    FullScreen(QMainWindow& window, MainArea& area);

    /// There, or back again.
    void toggle();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void enter();
    void leave();
    void giveBack();
    void windowChanged();
    void showAlone(bool alone);
    bool isEscape(QObject* watched, const QEvent& event) const;

    /// Where it stands with the window manager.
    enum class State {
        Off,
        /// Asked for: on the way the window may be in any state.
        Asked,
        On,
    };

    QMainWindow& m_window;
    MainArea& m_area;
    /// Where the keyboard was before.
    QPointer<QWidget> m_focus;
    Qt::WindowStates m_before;
    State m_state = State::Off;
};
