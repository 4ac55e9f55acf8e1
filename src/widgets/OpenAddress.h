#pragma once

#include <QString>

// What leaves this program for another one goes through here, and nowhere else.

/// Opens an http or https address in the user's browser, or a mailto address (a recipient alone,
/// no subject or the like) in the mail program. Returns whether it was handed on.
///
/// Addresses come from servers and list files, so anything else (another scheme, none, no host,
/// what is no URL at all) is refused with false and reaches no other program. Blanks and other
/// characters that a URL may not hold are percent-encoded.
bool openAddress(const QString& address);

/// Opens a help page of the program's own in the user's browser. Returns whether it was handed on.
///
/// `path` is the absolute path of a file whose name ends in ".html"; anything else, and a file that
/// is not there, is refused with false. It is never a text that came from outside.
bool openHelpPage(const QString& path);

/// Opens the folder at `path`, an absolute path, in the user's file manager. Returns whether it was
/// handed on; false for what is no folder. It is where the user has saved something, and like a
/// help page never a text that came from outside.
bool openFolder(const QString& path);
