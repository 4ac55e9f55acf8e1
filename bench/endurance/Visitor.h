#pragma once

#include <QObject>
#include <QPoint>

class Timer;
class WebCam;
class frmMain;

/// Linked into the whole program, its main() too: uses its window as a person does, from the
/// moment that it is on the screen. A derived class says what for, and is made by a function that
/// Q_COREAPP_STARTUP_FUNCTION names; it belongs to the application object.
class Visitor : public QObject
{
    Q_OBJECT

public:
    Visitor();

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    /// The window is there.
    virtual void begin() = 0;

    frmMain& window() const { return *m_window; }
    WebCam& cam() const;
    /// The timer of that name; the program ends with a message where there is none.
    Timer& timer(const char* name) const;

    /// Clicks the button of the viewer's toolbar, one of ToolBar::Button; `item` (from 1) chooses
    /// from its menu.
    void press(int button, int item = 0) const;
    /// Switches a check of the menu bar, by its name.
    void check(const char* menuEntry) const;
    /// Turns the wheel over the middle of the picture.
    void wheel(int notches) const;
    /// Clicks the middle of the picture with the left button.
    void zoom() const;
    /// Chooses Restore Image.
    void restore() const;
    /// Types `path` into the file dialog that is open and accepts it; a file that is there is
    /// replaced. The program ends with a message where no dialog is open.
    void answer(const QString& path) const;

private:
    QPoint middle() const;

    frmMain* m_window = nullptr;
};
