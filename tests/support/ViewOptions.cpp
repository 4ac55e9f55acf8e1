#include "support/ViewOptions.h"

Preferences readPreferences(const QByteArray& content)
{
    Preferences found;
    QString section;
    for (const QByteArray& line : content.split('\n')) {
        const QString text = QString::fromLatin1(line.trimmed());
        if (text.startsWith('['))
            section = text.mid(1, text.size() - 2);
        else if (!text.isEmpty())
            found[section + '/' + text.section('=', 0, 0)] = text.section('=', 1);
    }
    return found;
}

Preferences allSwitched()
{
    Preferences found;
    for (const ViewOption& one : ViewOptions)
        found[one.iniKey] = one.atFirst ? "False" : "True";
    return found;
}
