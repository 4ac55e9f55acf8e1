#include "cameras/CameraKey.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto PlainScheme = "http://"_L1;

} // namespace

CameraKey splitCameraKey(const QString& key)
{
    const auto mark = key.indexOf(HeaderMark);
    if (mark < 0)
        return {key, {}};
    return {key.left(mark), key.mid(mark + 1)};
}

QString joinCameraKey(const QString& address, const QString& extraHeader)
{
    return extraHeader.isEmpty() ? address : address + HeaderMark + extraHeader;
}

QString withoutHttpScheme(const QString& url)
{
    return url.startsWith(PlainScheme, Qt::CaseInsensitive) ? url.mid(PlainScheme.size()) : url;
}

QString comparableKey(const QString& key)
{
    return isSecureAddress(key) ? SecureScheme + key.mid(SecureScheme.size())
                                : withoutHttpScheme(key);
}

bool isSecureAddress(QStringView address)
{
    return address.startsWith(SecureScheme, Qt::CaseInsensitive);
}

bool hasWebScheme(QStringView text)
{
    return text.startsWith(PlainScheme, Qt::CaseInsensitive) || isSecureAddress(text);
}

QString webAddressOf(const QString& address)
{
    return isSecureAddress(address) ? address : PlainScheme + address;
}

QString hostPartOf(QStringView address)
{
    const bool secure = isSecureAddress(address);
    if (secure)
        address = address.mid(SecureScheme.size());
    const auto slash = address.indexOf(u'/');
    const QString host = (slash < 0 ? address : address.left(slash)).toString();
    return secure ? SecureScheme + host : host;
}
