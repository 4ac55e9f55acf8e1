#include "viewer/movie/MovieCommands.h"

#include "shared/JobQueue.h"
#include "viewer/history/History.h"
#include "viewer/history/HistoryView.h"
#include "viewer/movie/MovieProgress.h"
#include "viewer/movie/MovieReader.h"
#include "viewer/movie/MovieWriter.h"
#include "viewer/surface/ToolBar.h"
#include "widgets/MessageQueue.h"

#include <memory>
#include <utility>

using namespace Qt::Literals::StringLiterals;

MovieCommands::MovieCommands(const Parts& parts, const QString& folder, QWidget* viewer)
    : QObject(viewer)
    , m_parts(parts)
    , m_folder(folder)
    , m_viewer(viewer)
    , m_messages(new MessageQueue(viewer))
{
}

void MovieCommands::LoadMovie(const QString& FileName)
{
    load(FileName, false);
}

void MovieCommands::openMovie(const QString& path)
{
    load(path, true);
}

void MovieCommands::load(const QString& path, bool lockToolBar)
{
    auto job = std::make_unique<MovieReader>(path, m_folder);
    showProgressOf(*job, m_viewer->window());
    connect(job.get(), &MovieJob::Began, &m_parts.historyView, &HistoryView::beginMovie);
    connect(job.get(), &MovieReader::FrameRead, &m_parts.history, &History::AppendFrame);
    connect(job.get(), &MovieReader::Loaded, &m_parts.historyView,
            [this] { m_parts.historyView.showWithoutAnnouncing(1); });
    connect(job.get(), &MovieJob::Failed, this, &MovieCommands::tellOfNoMovie);
    connect(job.get(), &MovieJob::Finished, &m_parts.historyView, &HistoryView::endMovie);
    if (lockToolBar) {
        m_parts.tbMain.setButtonsEnabled(false);
        connect(job.get(), &MovieJob::Finished, &m_parts.tbMain,
                [this] { m_parts.tbMain.setButtonsEnabled(true); });
    }
    m_parts.queue.enqueue(std::move(job));
}

void MovieCommands::SaveMovie(const QString& FileName)
{
    auto job = std::make_unique<MovieWriter>(FileName, m_folder, m_parts.history.ilHis());
    showProgressOf(*job, m_viewer->window());
    connect(job.get(), &MovieWriter::Saved, this, [this, FileName] { emit Saved(FileName); });
    connect(job.get(), &MovieJob::Failed, this,
            [this, FileName](const QString& reason) { emit NotSaved(FileName, reason); });
    m_parts.queue.enqueue(std::move(job));
}

void MovieCommands::tellOfNoMovie()
{
    // Kept: whatever the error was.
    m_messages->tell({QMessageBox::Critical, u"Error"_s, u"Out of memory"_s});
}
