#pragma once

#include "cameras/CameraListLine.h"

#include <QByteArrayView>

#include <optional>

/// More cameras are not taken from one answer.
inline constexpr qsizetype MostFoundCameras = 100'000;

/// The cameras in `answer`, what the directory's server sent from its status line on: its body is
/// a camera list line, perhaps with a line end behind it. Nothing where the directory says that it
/// found none; an empty list for a body that holds no whole camera, such as a page of HTML. The
/// status is not looked at. The same camera may be there more than once.
std::optional<QList<CameraRecord>> readDirectoryAnswer(QByteArrayView answer);
