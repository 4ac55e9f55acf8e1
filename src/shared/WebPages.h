#pragma once

#include <QString>

/// The page of the online help, a setting of the build (PEVORA_HELP_PAGE).
QString helpPage();
