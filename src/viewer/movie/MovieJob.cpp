#include "viewer/movie/MovieJob.h"

using namespace Qt::Literals::StringLiterals;

MovieJob::MovieJob(QObject* parent)
    : Job(parent)
    , m_tmrMovie(u"tmrMovie"_s, 0, this)
{
    connect(&m_tmrMovie, &Timer::Tick, this, &MovieJob::runStep);
}

void MovieJob::begin()
{
    m_tmrMovie.setEnabled(true);
    prepare();
}

void MovieJob::cancel()
{
    m_tmrMovie.setEnabled(false);
    blockSignals(true);
}

void MovieJob::runStep()
{
    const Outcome outcome = step();
    if (outcome == Outcome::GoOn)
        return;
    m_tmrMovie.setEnabled(false);
    if (outcome == Outcome::Failed)
        emit Failed();
    emit Finished();
}
