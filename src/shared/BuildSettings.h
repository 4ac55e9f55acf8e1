#pragma once

#include <QString>

// What the build decides. The values are in one generated source: a change of one rebuilds only
// that.

/// The program's version, as "1.1".
QString programVersion();

/// Month and year of the build, as "November 2026"; SOURCE_DATE_EPOCH sets them.
QString releaseMonth();

/// Scheme and host of the camera directory's web site (PEVORA_DIRECTORY).
QString directorySite();

/// The address of the online help (PEVORA_HELP_PAGE); empty for the pages that come with the
/// program (shared/HelpPages.h).
QString helpPage();

/// The address of the page about extra request headers (PEVORA_HEADER_HELP_PAGE); empty likewise.
QString headerHelpPage();

/// The home page (PEVORA_HOME_PAGE).
QString homePage();
