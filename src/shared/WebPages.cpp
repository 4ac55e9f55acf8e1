#include "shared/WebPages.h"

QString helpPage()
{
    return QStringLiteral(PEVORA_HELP_PAGE);
}
