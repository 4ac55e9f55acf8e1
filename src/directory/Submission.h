#pragma once

#include <QString>

/// A value as the directory's queries have it: every blank becomes "+", every "&" "%26" and every
/// "=" "%3D". Kept: nothing else is escaped, so the directory cannot tell a "+" from a blank.
QString EscapeQueryValue(const QString& value);

/// A camera that is offered to the directory.
struct Submission
{
    QString name;
    QString url;
    /// One request header line, or empty.
    QString extraHeader;
    QString category;
};

/// The address that hands the camera to the directory at `base` (scheme and host, no "/" at the
/// end).
QString submissionUrl(const QString& base, const Submission& camera);
