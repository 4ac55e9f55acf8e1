#pragma once

class QFileDevice;

/// Waits until everything written to the open file `file` is on the disk itself. Flush it first.
/// Returns false where the system could not write it (a full or broken disk); true also on a file
/// system that cannot be asked.
bool syncFile(const QFileDevice& file);
