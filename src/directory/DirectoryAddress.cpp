#include "directory/DirectoryAddress.h"

#include "cameras/CameraKey.h"
#include "settings/Ini.h"
#include "shared/BuildSettings.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// Empty where there is no host in `address`.
QString baseOf(const QString& address)
{
    QString base = webAddressOf(withoutHttpScheme(address.trimmed()));
    while (base.endsWith(u'/'))
        base.chop(1);
    const bool schemeOnly = base.endsWith(u':') && !base.contains(u'/');
    return schemeOnly ? QString() : base;
}

} // namespace

QString directoryAddress(const QString& preferencesPath)
{
    const QString own = baseOf(GetFromINI(u"DIRECTORY"_s, u"HOST"_s, preferencesPath));
    return own.isEmpty() ? baseOf(directorySite()) : own;
}
