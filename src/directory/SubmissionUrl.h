#pragma once

#include <QString>

struct EnteredCamera;

/// A value as the directory's queries have it: every blank becomes "+", every "&" "%26" and every
/// "=" "%3D". Kept: nothing else is escaped, so the directory cannot tell a "+" from a blank.
QString EscapeQueryValue(const QString& value);

/// The address that hands the camera to the directory at `base` (scheme and host, no "/" at the
/// end). No field ends another: one that holds a line break ends there.
QString submissionUrl(const QString& base, const EnteredCamera& camera);
