#pragma once

#include <QString>

/// The text of a menu entry or button that shows `plain` as it stands: an ampersand is no mark of
/// an access key, and what follows a tab no shortcut.
inline QString menuText(QString plain)
{
    plain.replace(u'\t', u' ');
    return plain.replace(u'&', QStringLiteral("&&"));
}
