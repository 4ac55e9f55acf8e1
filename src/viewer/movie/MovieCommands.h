#pragma once

#include <QObject>
#include <QString>

class History;
class HistoryView;
class JobQueue;
class MessageQueue;
class ToolBar;

/// The history from and into movie files: starts the jobs that read and write them, each with its
/// progress window, and takes over what they bring.
class MovieCommands : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        History& history;
        HistoryView& historyView;
        ToolBar& tbMain;
        JobQueue& queue;
    };

    /// Owned by `viewer`, whose window the progress window goes with. `folder` is the application
    /// folder, for temporary files.
    MovieCommands(const Parts& parts, const QString& folder, QWidget* viewer);

    /// Replaces the history by the frames of a movie file, as soon as no other long work runs. A
    /// message box tells of a file that is no movie; the frames before the fault then stay.
    /// Url stays. The strip is left; images that come meanwhile follow the movie.
    void LoadMovie(const QString& FileName);

    /// The same with all buttons of the toolbar disabled from now to the end.
    void openMovie(const QString& path);

    /// Writes the history to a movie file, as soon as no other long work runs. Saved or NotSaved
    /// tells of the end; where it fails, an old file stays as it was.
    void SaveMovie(const QString& FileName);

signals:
    /// The movie is in the file `path`.
    void Saved(const QString& path);
    /// It is not. `reason` is a few words without a full stop.
    void NotSaved(const QString& path, const QString& reason);

private:
    void load(const QString& path, bool lockToolBar);
    void tellOfNoMovie();

    Parts m_parts;
    QString m_folder;
    QWidget* m_viewer;
    MessageQueue* m_messages;
};
