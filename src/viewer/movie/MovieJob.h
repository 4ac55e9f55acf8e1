#pragma once

#include "shared/Job.h"
#include "shared/Timer.h"

/// The loading or saving of a movie, for the JobQueue: one step each time its timer `tmrMovie`
/// elapses, and what a progress window (MovieProgress.h) shows of it. It opens no window.
class MovieJob : public Job
{
    Q_OBJECT

public:
    void begin() final;

    /// No signal but ProgressEnds follows, not even in a step that is under way.
    void cancel() final;

    /// Ends it where it is, because the user wants no more of it: as done, or as failed where half
    /// of it is worth nothing. Nothing where it is over.
    void stop();

signals:
    /// Its turn has come: the first signal, within begin(). A handler may cancel it.
    void Began();

    /// From here to ProgressEnds there is progress to show.
    void ProgressBegins();
    /// For the progress bar and the caption of its window. The value runs from 0 to the maximum
    /// last told, 100 before there was one.
    void MaximumChanged(int maximum);
    void ValueChanged(int value);
    void CaptionChanged(const QString& caption);
    /// Whatever its end is: before the signal that tells it.
    void ProgressEnds();

    /// It could not be done. `reason` is a few words for a person, without a full stop; empty where
    /// none is told. Finished follows at once.
    void Failed(const QString& reason);

protected:
    enum class Outcome {
        GoOn,
        Done,
        Failed,
    };

    explicit MovieJob(QObject* parent = nullptr);

    /// Before the first step, within begin().
    virtual void prepare() = 0;
    /// One step. It is not called again once it has returned anything but GoOn.
    virtual Outcome step() = 0;
    /// How it ends where the user stops it.
    virtual Outcome stopped() { return Outcome::Done; }
    /// Before Finished, where it is done.
    virtual void conclude() {}

    /// Failed, for that reason.
    Outcome failed(const QString& reason);

private:
    void runStep();
    void end(Outcome outcome);

    Timer m_tmrMovie;
    bool m_over = false;
    QString m_reason;
};
