#pragma once

#include <QString>

/// The names of the help pages that the program itself opens.
inline constexpr auto StartHelpPage = QLatin1StringView("index.html");
inline constexpr auto HeaderHelpPage = QLatin1StringView("headers.html");

/// The path of the help page `page` (a file name) of the program whose executable is in
/// `programFolder`: in `share/pevora/help` beside that folder where an installed program has it,
/// else in the folder `help` beside the executable of a portable copy. Where neither has it, the
/// path is the second one, and nothing is there.
QString helpPageLocation(const QString& programFolder, const QString& page);
