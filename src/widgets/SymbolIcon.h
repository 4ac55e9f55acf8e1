#pragma once

#include <QIcon>
#include <QString>

/// The icon ":/icons/<name>.svg", drawn for every size and device pixel ratio of its own. Copies of
/// the icon share what was drawn.
///
/// What is `currentColor` in the file takes the colour of a button's text in the application's
/// palette at the moment of painting, so that a change between a light and a dark palette shows
/// with the next repaint: the disabled colour for QIcon::Disabled, that of highlighted text for
/// QIcon::Selected. A file without `currentColor` keeps its own colours, and is faded where it is
/// disabled. The icon is square, and stands in the middle of a rectangle that is not.
///
/// A null icon where there is no such file or it is no SVG.
QIcon symbolIcon(const QString& name);
