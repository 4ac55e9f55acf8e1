#pragma once

#include <QString>
#include <QStringList>

/// The program's only access to its ini files: pref.ini with the preferences and favourites, and
/// lan.ini with the captions of a language. The format is described in settings/IniFile.h, and
/// when a file is read and written in settings/IniCache.h, one of which is kept as a child of the
/// application object. Without an application object every call reads or writes at once.
///
/// For the thread of the application object only. No call reports an error: a file that cannot be
/// read has no keys, a file that cannot be written stays as it was.

/// The value of a key, at most its first 749 characters (code points); empty where there is
/// no such key, section or file. Looks for the key in lower case, which no file can tell from any
/// other spelling.
QString GetFromINI(const QString& section, const QString& key, const QString& path);

/// The same whole, however long it is: for what would be lost for good if it were cut and written
/// again.
QString GetWholeFromINI(const QString& section, const QString& key, const QString& path);

/// The keys that the section of that file has, in small letters and in no particular order.
QStringList KeysInINI(const QString& section, const QString& path);

/// Reads the file anew, because another instance of the program may have changed it; what was
/// written or removed here and is not on the disk yet is on top of that. For who holds the lock of
/// its folder (shared/FolderLock.h), so that nothing comes between this and FlushINI().
void RefreshINI(const QString& path);

/// Sets a key, spelt in capitals in the file; file and section are created where missing, a folder
/// is not. The file is written a little later, see FlushINI, but every reader here sees the value
/// at once. Lets the events that wait be handled once before it returns, except when called from
/// such an event.
void WriteToINI(const QString& section, const QString& key, const QString& value,
                const QString& path);

/// Removes a key, if it is there. Handles no events.
void RemoveFromINI(const QString& section, const QString& key, const QString& path);

/// Puts everything that was written or removed on the disk now. What another instance wrote
/// meanwhile stays, but for the same keys. Returns false where a file could not be written; it is
/// as it was then, what was to be written is dropped, and `reason`, if given, says why, as
/// replaceFile() does.
bool FlushINI(QString* reason = nullptr);
