#pragma once

#include <QString>

/// What lists of cameras show. Names and addresses come from anywhere: they are shown as plain text
/// on one line, and no more of them than can be seen.

/// `text` for one line on screen, at most its first 10,000 characters; what breaks lines
/// becomes a blank.
QString shownLine(const QString& text);

/// A tool tip with `text`, at most its first 500 characters. It is markup, which alone is
/// wrapped to what a screen has room for, and so that it takes no name for markup.
QString shownToolTip(const QString& text);

/// A tool tip with the name and the address of a camera, but not its extra header, which may be a
/// secret.
QString cameraToolTip(const QString& name, const QString& cameraKey);
