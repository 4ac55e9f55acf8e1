#pragma once

#include <QProxyStyle>

/// The desktop's own style, but for the arrow on the button of a menu bar that is too narrow for
/// its menus. Each menu bar asks for that picture when it is made, seen or not. The styles keep
/// theirs in files, and a file whose format nobody names makes Qt load every image plug-in that is
/// installed: a tenth of the start. Here it is a drawing of the program's own.
class ProgramStyle : public QProxyStyle
{
    Q_OBJECT

public:
    QIcon standardIcon(StandardPixmap which, const QStyleOption* option = nullptr,
                       const QWidget* widget = nullptr) const override;
};
