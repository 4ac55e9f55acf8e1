#pragma once

#include <QString>

// Pages of the program's web site; each is a setting of the build.

/// The online help (PEVORA_HELP_PAGE).
QString helpPage();

/// The page about extra request headers (PEVORA_HEADER_HELP_PAGE).
QString headerHelpPage();

/// The home page (PEVORA_HOME_PAGE).
QString homePage();
