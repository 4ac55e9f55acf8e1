#pragma once

#include <QStringList>

/// What some work costs in a process of its own.
struct ChildCost
{
    int exitCode = -1;        ///< -1 where the process crashed, or did not end within a minute.
    double seconds = 0;       ///< Of processor time, so that a busy machine does not matter.
    double peakMegabytes = 0; ///< The most memory it held at one time.
};

/// Runs this test program again, with these arguments, and waits for its end.
ChildCost costOfChild(const QStringList& arguments);
