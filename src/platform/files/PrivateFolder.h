#pragma once

#include <QString>

/// The folder that the user's own instances of the program share: nobody else reads it, writes
/// it or puts something in its place. Made where it is missing. Empty where there is none that can
/// be trusted.
///
/// On Linux it is `pevora` in the runtime folder (XDG_RUNTIME_DIR), or where there is no runtime
/// folder of this user's `pevora` in the user's cache folder; never one in a folder that all write
/// into, as the temporary folder. It must be a real folder (no link), the user's, and closed to
/// group and others (0700); one that is something else is left alone and not used. On Windows it
/// lies in the user's profile.
QString privateFolder();

/// The name under which a QLocalServer serves what `path`, a file in the private folder, stands
/// for. Empty where there is none.
QString localServerName(const QString& path);
