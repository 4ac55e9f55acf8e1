#include "support/JobLog.h"

#include "support/Waiting.h"
#include "viewer/movie/MovieReader.h"

#include <QTest>

#include <functional>

JobLog::JobLog(MovieJob& job)
    : m_job(job)
{
    connect(&job, &MovieJob::MaximumChanged, this,
            [this](int maximum) { m_told << QString("maximum %1").arg(maximum); });
    connect(&job, &MovieJob::ValueChanged, this,
            [this](int value) { m_told << QString("value %1").arg(value); });
    connect(&job, &MovieJob::CaptionChanged, this,
            [this](const QString& caption) { m_told << "caption " + caption; });
    connect(&job, &MovieJob::Failed, this, [this] { m_told << "failed"; });
    connect(&job, &MovieJob::Finished, this, [this] { m_told << "finished"; });
    auto* reader = qobject_cast<MovieReader*>(&job);
    if (!reader)
        return;
    connect(reader, &MovieReader::FrameRead, this, [this](const Still& frame) {
        m_told << QString("frame %1x%2").arg(frame.size().width()).arg(frame.size().height());
    });
    connect(reader, &MovieReader::Loaded, this, [this] { m_told << "loaded"; });
}

QStringList JobLog::run()
{
    m_job.begin();
    if (!waitFor([this] { return isFinished(); }))
        m_told << "not over";
    return m_told;
}

int JobLog::roundsOfEvents()
{
    int rounds = 0;
    std::function<void()> again = [&] {
        ++rounds;
        if (!isFinished())
            QMetaObject::invokeMethod(this, again, Qt::QueuedConnection);
    };
    again();
    run();
    return rounds;
}

QStringList JobLog::told(const QString& word) const
{
    QStringList found;
    for (const QString& one : m_told) {
        if (one.startsWith(word + ' '))
            found << one.mid(word.size() + 1);
    }
    return found;
}
