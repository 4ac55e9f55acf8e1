#pragma once

#include <QString>

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

/// How many keys the section of that file has: an upper bound for a count that the file announces.
qsizetype CountKeysInINI(const QString& section, const QString& path);

/// Sets a key, spelt in capitals in the file; file and section are created where missing, a folder
/// is not. The file is written a little later, see FlushINI, but every reader here sees the value
/// at once. Lets the events that wait be handled once before it returns, except when called from
/// such an event.
void WriteToINI(const QString& section, const QString& key, const QString& value,
                const QString& path);

/// Removes a key, if it is there. Handles no events.
void RemoveFromINI(const QString& section, const QString& key, const QString& path);

/// Puts everything that was written or removed on the disk now. Returns false where a file could
/// not be written; it is as it was then, and what was to be written is dropped.
bool FlushINI();
