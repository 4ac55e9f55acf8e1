#include "viewer/movie/MovieWork.h"

#include "viewer/movie/MovieReader.h"
#include "viewer/movie/MovieWriter.h"
#include "viewer/movie/frmMovie.h"

#include <QMessageBox>

using namespace Qt::Literals::StringLiterals;

MovieWork::MovieWork(std::unique_ptr<MovieJob> job, QWidget* parent)
    : m_job(job.release())
    , m_parent(parent)
{
    m_job->setParent(this);
    connect(m_job, &MovieJob::Failed, this, [this] {
        hideWindow();
        failing();
        emit Failed();
    });
    connect(m_job, &MovieJob::Finished, this, [this] {
        hideWindow();
        emit Finished();
    });
}

MovieWork::~MovieWork()
{
    delete m_window;
}

void MovieWork::begin()
{
    emit Began();
    if (m_over)
        return; // a handler has cancelled it
    showWindow();
}

void MovieWork::cancel()
{
    m_over = true;
    blockSignals(true);
    m_job->cancel();
    hideWindow();
}

void MovieWork::showWindow()
{
    m_window = new frmMovie(m_parent);
    connect(m_job, &MovieJob::MaximumChanged, m_window, &frmMovie::setMaximum);
    connect(m_job, &MovieJob::ValueChanged, m_window, &frmMovie::setValue);
    connect(m_job, &MovieJob::CaptionChanged, m_window, &frmMovie::setWindowTitle);
    connect(m_window, &frmMovie::CloseRequested, this, &MovieWork::stop);
    m_job->begin();
    m_window->show();
}

/// It goes with this object: it may be in the middle of closing.
void MovieWork::hideWindow()
{
    if (!m_window)
        return;
    m_window->disconnect(this);
    m_window->hide();
}

void MovieWork::stop()
{
    m_job->cancel();
    hideWindow();
    stopping();
    emit Finished();
}

MovieLoading::MovieLoading(const QString& path, const QString& applicationFolder, QWidget* parent)
    : MovieWork(std::make_unique<MovieReader>(path, applicationFolder), parent)
{
    const auto& reader = static_cast<const MovieReader&>(job());
    connect(&reader, &MovieReader::FrameRead, this, [this](const Still& frame) {
        m_anyFrame = true;
        emit FrameRead(frame);
    });
    connect(&reader, &MovieReader::Loaded, this, [this] {
        hideWindow();
        emit Loaded();
    });
}

void MovieLoading::failing()
{
    // Kept: whatever the error was.
    auto* box = new QMessageBox(QMessageBox::Critical, u"Error"_s, u"Out of memory"_s,
                                QMessageBox::Ok, parentWindow());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void MovieLoading::stopping()
{
    if (m_anyFrame)
        emit Loaded();
}

MovieSaving::MovieSaving(const QString& path, const QString& applicationFolder,
                         const ImageList& images, QWidget* parent)
    : MovieWork(std::make_unique<MovieWriter>(path, applicationFolder, images), parent)
{
}
