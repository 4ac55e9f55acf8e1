#include "shared/CameraKey.h"

using namespace Qt::Literals::StringLiterals;

CameraKey splitCameraKey(const QString& key)
{
    const auto mark = key.indexOf(HeaderMark);
    if (mark < 0)
        return {key, {}};
    return {key.left(mark), key.mid(mark + 1)};
}

QString withoutHttpScheme(const QString& url)
{
    constexpr auto scheme = "http://"_L1;
    return url.startsWith(scheme, Qt::CaseInsensitive) ? url.mid(scheme.size()) : url;
}

QString hostPartOf(QStringView address)
{
    const auto slash = address.indexOf(u'/');
    return (slash < 0 ? address : address.left(slash)).toString();
}
