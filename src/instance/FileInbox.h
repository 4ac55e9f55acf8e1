#pragma once

#include <QLineEdit>

#include <functional>

class Timer;

/// `txtCom`, the text box into which other instances write the files that they hand over: each
/// change of its text is acted upon once, in the order of coming, as soon as nothing that takes
/// long runs. Never visible, never has the keyboard; the window that it is in is neither restored
/// nor raised. The text stays after use.
class FileInbox : public QLineEdit
{
    Q_OBJECT

public:
    /// What the box needs of its window.
    struct Window
    {
        /// Whether something runs that a file has to wait for; wake() is due when it is over.
        std::function<bool()> isBusy;
        std::function<void(const QString& name)> openMovie;
        std::function<void(const QString& name)> openList;
    };

    FileInbox(Window window, QWidget* parent);

    /// Puts `text` into the box; to be acted upon also where the box has the same text already.
    /// False, and nothing happens, where MaxWaiting are waiting.
    bool receive(const QString& text);

    /// Goes on with what waits.
    void wake();

    /// For the end of the program: opens the lists that still wait, whose senders are gone, so
    /// that they are saved with the rest. Movies are forgotten.
    void openWaitingLists();

    static constexpr qsizetype MaxWaiting = 1'000;

private:
    void actOnNext();

    Window m_window;
    QStringList m_waiting;
    Timer* m_tmrTurn;
};
