#include "shared/WebPages.h"

QString helpPage()
{
    return QStringLiteral(PEVORA_HELP_PAGE);
}

QString headerHelpPage()
{
    return QStringLiteral(PEVORA_HEADER_HELP_PAGE);
}

QString homePage()
{
    return QStringLiteral(PEVORA_HOME_PAGE);
}
