#include "shell/ProgramStyle.h"

#include "widgets/SymbolIcon.h"

using namespace Qt::Literals::StringLiterals;

QIcon ProgramStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                                 const QWidget* widget) const
{
    if (which == SP_ToolBarHorizontalExtensionButton)
        return symbolIcon(u"more"_s);
    return QProxyStyle::standardIcon(which, option, widget);
}
