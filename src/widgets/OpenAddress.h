#pragma once

#include <QString>

/// Opens an http or https address in the user's browser. Returns whether it was handed on.
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
