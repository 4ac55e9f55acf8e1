#pragma once

#include <QStringList>

/// The nine categories that every Pevora knows, in the order of their names: those of the page
/// that adds a camera, and those that the directory is searched by. A user's own may be others.
const QStringList& cameraCategories();

/// The one of them that a new camera is in until a person chooses another.
inline constexpr QLatin1StringView DefaultCategory{"General"};
