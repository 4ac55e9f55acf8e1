#pragma once

#include "picture/ImageList.h"
#include "picture/Still.h"
#include "shared/Job.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <memory>

class MovieJob;
class frmMovie;

/// The loading or saving of a movie with its progress window, as a work for the JobQueue:
///
///     auto work = std::make_unique<MovieLoading>(path, folder, window());
///     connect(work.get(), &MovieLoading::FrameRead, this, ...);
///     m_works.enqueue(std::move(work));
///
/// The window is there from begin() to the end, whatever the end is, and is hidden before the
/// signal that tells the end. A user who closes it ends the work: only Finished follows, with the
/// exception that MovieLoading names. cancel() ends it without a word.
class MovieWork : public Job
{
    Q_OBJECT

public:
    ~MovieWork() override;

    void begin() override;
    void cancel() override;

signals:
    /// Its turn has come: emitted within begin(), before the window is shown.
    void Began();

    /// It could not be done. Finished follows at once.
    void Failed();

protected:
    /// `parent` is the window that the progress window goes with; may be null.
    MovieWork(std::unique_ptr<MovieJob> job, QWidget* parent);

    MovieJob& job() const { return *m_job; }
    QWidget* parentWindow() const { return m_parent; }
    void hideWindow();

    /// Before Failed is told, the window being hidden already.
    virtual void failing() {}
    /// Before Finished is told, because the user has closed the window.
    virtual void stopping() {}

private:
    void showWindow();
    void stop();

    MovieJob* m_job; ///< A child.
    QPointer<QWidget> m_parent;
    QPointer<frmMovie> m_window;
    bool m_over = false;
};

/// Loads a movie. In the order of the signals its owner empties the history and the picture
/// (Began), appends each frame without a key (FrameRead), and shows the first (Loaded). Where it
/// fails, a message box says so, for which nobody waits, and the frames so far remain.
class MovieLoading : public MovieWork
{
    Q_OBJECT

public:
    MovieLoading(const QString& path, const QString& applicationFolder, QWidget* parent);

signals:
    void FrameRead(const Still& frame);

    /// There are no more frames, and there was one at least. Also where the user has closed the
    /// window after the first.
    void Loaded();

protected:
    void failing() override;
    void stopping() override;

private:
    bool m_anyFrame = false;
};

/// Saves the pictures of `images`, which must outlive the work, as a movie. See MovieWriter.
class MovieSaving : public MovieWork
{
    Q_OBJECT

public:
    MovieSaving(const QString& path, const QString& applicationFolder, const ImageList& images,
                QWidget* parent);
};
