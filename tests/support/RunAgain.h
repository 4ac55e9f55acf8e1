#pragma once

#include <QByteArray>

/// A test of what an ordinary user is refused, or of a disk of its own, runs its function again
/// in another process:
///
///     void isRefused()
///     {
///         if (ranAsOrdinaryUser())
///             return;
///         // what is tested, as that user
///     }

/// Runs the current test function, of a data-driven one the current row, again as an ordinary user
/// (through setpriv; as the user who runs it where that is not root). The test fails, with what the
/// other process printed, where it fails there; it is given 60 s. True in this process, where
/// nothing is left to do, and false in the other.
bool ranAsOrdinaryUser();

/// Whether this process is that other one.
bool runsAgain();

/// The same in a mount namespace of its own, in which it may mount file systems: nothing mounted
/// there is seen outside, nor outlives the process.
bool ranWithOwnMounts();

/// Mounts an empty tmpfs of `kilobytes` on an existing folder. Returns "mounted", or else what
/// went wrong.
QByteArray mountSmallDisk(const QString& folder, int kilobytes);

/// Mounts an empty ramfs on an existing folder: a file system whose times move in the steps of the
/// system's tick, some milliseconds, and no finer. Returns as above.
QByteArray mountCoarseClock(const QString& folder);
