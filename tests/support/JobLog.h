#pragma once

#include <QObject>
#include <QStringList>

class MovieJob;

/// What a movie's saving or loading tells, in order: "maximum 5", "value 1", "caption Done!",
/// "frame 64x48", "loaded", "failed", "finished".
class JobLog : public QObject
{
public:
    explicit JobLog(MovieJob& job);

    /// Begins the job and waits until it is finished, at most 30 s (longer under the sanitizers).
    /// Everything told until then.
    QStringList run();

    /// The same; how many rounds of events there were meanwhile: one event that posts the next.
    int roundsOfEvents();

    const QStringList& told() const { return m_told; }
    /// Those that begin with `word`, without it.
    QStringList told(const QString& word) const;
    bool isFinished() const { return m_told.contains("finished"); }

private:
    MovieJob& m_job;
    QStringList m_told;
};
