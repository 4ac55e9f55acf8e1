#include "viewer/movie/MovieProgress.h"

#include "viewer/movie/MovieJob.h"
#include "viewer/movie/frmMovie.h"

#include <QPointer>

void showProgressOf(MovieJob& job, QWidget* parent)
{
    const auto open = [&job, parent = QPointer(parent)] {
        auto* window = new frmMovie(parent);
        QObject::connect(&job, &MovieJob::MaximumChanged, window, &frmMovie::setMaximum);
        QObject::connect(&job, &MovieJob::ValueChanged, window, &frmMovie::setValue);
        QObject::connect(&job, &MovieJob::CaptionChanged, window, &frmMovie::setWindowTitle);
        QObject::connect(&job, &MovieJob::ProgressEnds, window, &QWidget::hide);
        // Not before: it may be in the middle of closing.
        QObject::connect(&job, &QObject::destroyed, window, &QObject::deleteLater);
        QObject::connect(window, &frmMovie::CloseRequested, &job, &MovieJob::stop);
        window->show();
    };
    QObject::connect(&job, &MovieJob::ProgressBegins, &job, open);
}
