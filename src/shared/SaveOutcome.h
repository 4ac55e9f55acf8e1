#pragma once

#include <QString>

/// What became of a save.
struct SaveOutcome
{
    bool isDone = true;
    /// Why it was not done, in a few words for a person and without a full stop; see replaceFile().
    /// Empty where it was.
    QString reason = {};

    operator bool() const { return isDone; }
};
