#include "cameras/PrivateCamera.h"

#include "cameras/CameraKey.h"

#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Of hosts in lower case, addresses in the form that QUrl gives them.
const QList<QRegularExpression>& privateHosts()
{
    static const QList<QRegularExpression> table = {
        QRegularExpression(uR"(^(::ffff:)?10(\.\d+){3}$)"_s),
        QRegularExpression(uR"(^(::ffff:)?172\.(1[6-9]|2\d|3[01])(\.\d+){2}$)"_s),
        QRegularExpression(uR"(^(::ffff:)?192\.168(\.\d+){2}$)"_s),
        QRegularExpression(uR"(^(::ffff:)?127(\.\d+){3}$)"_s),
        QRegularExpression(uR"(^(.+\.)?localhost$)"_s),
        QRegularExpression(uR"(^(.+\.)?local$)"_s),
        QRegularExpression(uR"(^::1$)"_s),
        // fe80::/10
        QRegularExpression(uR"(^fe[89ab][0-9a-f]:)"_s),
        // fc00::/7
        QRegularExpression(uR"(^f[cd][0-9a-f]{2}:)"_s),
    };
    return table;
}

bool isPrivateHost(QString host)
{
    while (host.endsWith(u'.'))
        host.chop(1);
    return std::any_of(privateHosts().begin(), privateHosts().end(),
                       [&host](const auto& one) { return one.match(host).hasMatch(); });
}

} // namespace

bool isPrivateCamera(const QString& key)
{
    const auto [address, extraHeader] = splitCameraKey(key);
    if (extraHeader.startsWith("Authorization:"_L1, Qt::CaseInsensitive))
        return true;
    // Its host alone: a path may hold what no URL may.
    const QUrl url(webAddressOf(hostPartOf(withoutHttpScheme(address))));
    return !url.userInfo().isEmpty() || isPrivateHost(url.host().toLower());
}
