#pragma once

#include "picture/ImageList.h"
#include "viewer/movie/MovieJob.h"

#include <QByteArray>
#include <QString>

/// Saves a list of pictures as a movie file, one picture a step. Each is encoded anew, whatever
/// it came as, and lies as "pvm.jpg" in the application folder meanwhile, where the last one
/// stays; that file is never read.
///
/// The movie is put together in memory and takes the old file's place whole at the end: until
/// then, and for good where the save fails or is cancelled, the old file is there untouched. It
/// fails, too, where the user stops it or clears the list meanwhile: a short movie is none.
class MovieWriter : public MovieJob
{
    Q_OBJECT

public:
    /// `images` must outlive this object, and may change between two steps: saved is each entry
    /// that is there when its turn comes, whatever has gone before it. Their number when the work
    /// begins is what the progress counts with.
    MovieWriter(const QString& path, const QString& applicationFolder, const ImageList& images);

signals:
    /// The movie is in its file. Finished follows at once.
    void Saved();

protected:
    void prepare() override;
    Outcome step() override;
    Outcome stopped() override;
    void conclude() override;

private:
    Outcome addFrame(int n);
    Outcome write();
    void setValue(int value);

    enum class Stage {
        Frames,
        Writing,
    };

    QString m_path;
    QString m_frameFile;
    const ImageList& m_images;
    Stage m_stage = Stage::Frames;
    int m_saved = 0;          ///< Frames.
    quint64 m_lastSerial = 0; ///< Of the entry saved last.
    int m_timesCleared = 0;
    int m_maximum = 0;
    QByteArray m_movie;
};
