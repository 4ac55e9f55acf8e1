#pragma once

#include "shared/Job.h"
#include "shared/Timer.h"

/// What saving and loading a movie have in common: one step each time its timer `tmrMovie`
/// elapses, and what a progress window shows of it. It opens no window.
class MovieJob : public Job
{
    Q_OBJECT

public:
    void begin() final;

    /// No signal follows, not even in a step that is under way.
    void cancel() final;

signals:
    /// For the progress bar and the caption of its window. The value runs from 0 to the maximum
    /// last told, 100 before there was one.
    void MaximumChanged(int maximum);
    void ValueChanged(int value);
    void CaptionChanged(const QString& caption);

    /// It could not be done. Finished follows at once.
    void Failed();

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

private:
    void runStep();

    Timer m_tmrMovie;
};
