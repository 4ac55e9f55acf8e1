#pragma once

#include <QDateTime>
#include <QString>

/// The name that a file dialog offers for what was seen of `camera`, a name from anywhere, without
/// an ending: "Clock 2026-11-21 18-09-05". Without a camera it is "Image 2026-11-21 18-09-05". What
/// a file name may not have on some system becomes "_", a dot at the beginning too; a long name is
/// cut to what a file system takes.
QString offeredName(const QString& camera, const QDateTime& time);
