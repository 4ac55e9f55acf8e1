#pragma once

#include <QString>

/// What lists of cameras show. Names and addresses come from anywhere: they are shown as plain text
/// on one line, and no more of them than can be seen.

/// `text` for one line on screen, at the most its first 10,000 characters; what breaks lines
/// becomes a blank.
QString shownLine(const QString& text);

/// A tool tip with the name and the address of a camera, each at the most 500 characters, but not
/// its extra header, which may be a secret. It is markup, so that it never takes a name for some.
QString cameraToolTip(const QString& name, const QString& cameraKey);
