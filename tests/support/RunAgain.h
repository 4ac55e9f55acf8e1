#pragma once

#include <QByteArray>

/// A test of what an ordinary user is refused, or of a disk of its own, runs its own function
/// again in another process:
///
///     void AnyTest::isRefused()
///     {
///         if (!runsAgain()) {
///             QCOMPARE(runAgainAsOrdinaryUser("isRefused"), "passed");
///             return;
///         }
///         // what is tested, as that user
///     }

/// Whether this process is the other one.
bool runsAgain();

/// Runs one test function of this program, of a data-driven one the current row, again as an
/// ordinary user (through setpriv; as the user who runs it where that is not root). Returns
/// "passed", or else what it printed. The process ends after 60 s at the latest.
QByteArray runAgainAsOrdinaryUser(const char* function);

/// The same in a mount namespace of its own, in which it may mount file systems: nothing mounted
/// there is seen outside, nor outlives the process.
QByteArray runAgainWithOwnMounts(const char* function);

/// Mounts an empty tmpfs of `kilobytes` on an existing folder. Returns "mounted", or else what
/// went wrong.
QByteArray mountSmallDisk(const QString& folder, int kilobytes);

/// Mounts an empty ramfs on an existing folder: a file system whose times move in the steps of the
/// system's tick, some milliseconds, and no finer. Returns as above.
QByteArray mountCoarseClock(const QString& folder);
