#include "viewer/movie/MovieJob.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

MovieJob::MovieJob(QObject* parent)
    : Job(parent)
    , m_tmrMovie(u"tmrMovie"_s, 0, this)
{
    connect(&m_tmrMovie, &Timer::Tick, this, &MovieJob::runStep);
}

void MovieJob::begin()
{
    emit Began();
    if (m_over)
        return; // a handler has cancelled it
    m_tmrMovie.setEnabled(true);
    emit ProgressBegins();
    prepare();
}

void MovieJob::cancel()
{
    m_tmrMovie.setEnabled(false);
    if (!std::exchange(m_over, true))
        emit ProgressEnds();
    blockSignals(true);
}

void MovieJob::stop()
{
    end(stopped());
}

MovieJob::Outcome MovieJob::failed(const QString& reason)
{
    m_reason = reason;
    return Outcome::Failed;
}

void MovieJob::runStep()
{
    const Outcome outcome = step();
    if (outcome != Outcome::GoOn)
        end(outcome);
}

void MovieJob::end(Outcome outcome)
{
    if (std::exchange(m_over, true))
        return;
    m_tmrMovie.setEnabled(false);
    emit ProgressEnds();
    if (outcome == Outcome::Failed)
        emit Failed(m_reason);
    else
        conclude();
    emit Finished();
    // A step that is under way may have more to tell.
    blockSignals(true);
}
