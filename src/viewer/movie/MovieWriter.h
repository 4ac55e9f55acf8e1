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
/// then, and for good where the save fails or is cancelled, the old file is there untouched.
class MovieWriter : public MovieJob
{
    Q_OBJECT

public:
    /// `images` must outlive this object, and may change between two steps: saved is each entry
    /// that is there when its number comes. Their number when the work begins is what the
    /// progress counts with.
    MovieWriter(const QString& path, const QString& applicationFolder, const ImageList& images);

protected:
    void prepare() override;
    Outcome step() override;

private:
    bool addFrame();
    bool write();
    void setValue(int value);

    enum class Stage {
        Frames,
        Writing,
    };

    QString m_path;
    QString m_frameFile;
    const ImageList& m_images;
    Stage m_stage = Stage::Frames;
    int m_saved = 0; ///< Frames, and so the number of the entry before the next one.
    int m_maximum = 0;
    QByteArray m_movie;
};
