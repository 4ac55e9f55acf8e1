#pragma once

#include <QStringList>

/// What some work costs in a process of its own.
struct ChildCost
{
    int exitCode = -1;        ///< -1 where the process crashed, or did not end within HangMs.
    double seconds = 0;       ///< Of processor time; to compare with other work of the same run.
    double peakMegabytes = 0; ///< The most memory it held at one time.
};

/// Runs this test program again, with these arguments, and waits for its end.
ChildCost costOfChild(const QStringList& arguments);
