#include "viewer/movie/MovieCommands.h"

#include "shared/JobQueue.h"
#include "viewer/history/History.h"
#include "viewer/history/HistoryView.h"
#include "viewer/movie/MovieWork.h"
#include "viewer/surface/ToolBar.h"

#include <memory>
#include <utility>

using namespace Qt::Literals::StringLiterals;

MovieCommands::MovieCommands(const Parts& parts, const QString& folder, QWidget* viewer)
    : QObject(viewer)
    , m_parts(parts)
    , m_folder(folder)
    , m_viewer(viewer)
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
    auto work = std::make_unique<MovieLoading>(path, m_folder, m_viewer->window());
    connect(work.get(), &MovieLoading::Began, &m_parts.historyView, &HistoryView::emptyHistory);
    connect(work.get(), &MovieLoading::FrameRead, &m_parts.history, &History::AppendFrame);
    connect(work.get(), &MovieLoading::Loaded, &m_parts.historyView,
            [this] { m_parts.historyView.showWithoutAnnouncing(1); });
    if (lockToolBar) {
        m_parts.tbMain.setButtonsEnabled(false);
        connect(work.get(), &MovieLoading::Finished, &m_parts.tbMain,
                [this] { m_parts.tbMain.setButtonsEnabled(true); });
    }
    m_parts.queue.enqueue(std::move(work));
}

void MovieCommands::SaveMovie(const QString& FileName)
{
    auto work = std::make_unique<MovieSaving>(FileName, m_folder, m_parts.history.ilHis(),
                                              m_viewer->window());
    connect(work.get(), &MovieSaving::Failed, this,
            [this] { emit StatusText(u"  Error: Not saved."_s); });
    m_parts.queue.enqueue(std::move(work));
}
