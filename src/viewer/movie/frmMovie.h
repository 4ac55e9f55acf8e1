#pragma once

#include <QProgressBar>
#include <QWidget>

/// The small window that shows how far the saving or loading of a movie has come: a caption and
/// a progress bar (`pBar`). It belongs to whoever shows it, who also hides and deletes it; it is
/// not modal, comes to the top above all other windows each time it is activated, and never ends
/// the program when it is closed. It does no work itself.
class frmMovie : public QWidget
{
    Q_OBJECT

public:
    /// A window of its own that goes with `parent`, hidden at first. Caption "Saving Movie",
    /// value 0 of 100.
    explicit frmMovie(QWidget* parent = nullptr);

    /// What the bar shows, on screen when the call returns: `value` of `maximum`. A maximum below
    /// 1 and a value beyond the maximum change nothing.
    void setMaximum(int maximum);
    void setValue(int value);

    const QProgressBar& pBar() const { return m_pBar; }

signals:
    /// The user has closed the window, which hides it.
    void CloseRequested();

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QProgressBar m_pBar{this};
};
