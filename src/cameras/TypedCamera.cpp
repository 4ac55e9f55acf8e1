#include "cameras/TypedCamera.h"

#include "cameras/CameraKey.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto SchemeEnd = "://"_L1;
constexpr auto AuthorizationName = "Authorization:"_L1;

/// Cuts the schemes that `address` begins with, and the blanks around them; gives the last one.
QString takeWebScheme(QString& address)
{
    QString scheme;
    address = address.trimmed();
    while (hasWebScheme(address)) {
        const auto end = address.indexOf(SchemeEnd) + SchemeEnd.size();
        scheme = address.left(end);
        address = address.mid(end).trimmed();
    }
    return scheme;
}

bool hasScheme(const QString& address)
{
    static const QRegularExpression scheme(u"^[A-Za-z][A-Za-z0-9+.-]*://"_s);
    return address.contains(scheme);
}

/// Cuts what stands before the host of `address`, which has no scheme; gives it, percent-encoded
/// as it may be. A password may hold an "@" itself, so the last one ends it.
QString takeUser(QString& address)
{
    static const QRegularExpression hostEnd(u"[/?#]"_s);
    const auto at = address.left(address.indexOf(hostEnd)).lastIndexOf(u'@');
    if (at < 0)
        return {};
    const QString user = address.left(at);
    address = address.mid(at + 1).trimmed();
    return user;
}

QString authorizationOf(const QString& user)
{
    const auto decoded = [](const QString& text) {
        return QByteArray::fromPercentEncoding(text.toUtf8());
    };
    return basicAuthorization(decoded(user.section(u':', 0, 0)), decoded(user.section(u':', 1)));
}

} // namespace

std::optional<QString> cleanedCameraKey(const QString& typed)
{
    auto [address, extraHeader] = splitCameraKey(typed);
    extraHeader = extraHeader.trimmed();
    QString scheme;
    QString user;
    // Behind a user there may be a scheme once more ("me@ftp://cam").
    for (qsizetype before = -1; before != address.size();) {
        before = address.size();
        if (const QString found = takeWebScheme(address); !found.isEmpty())
            scheme = found;
        if (hasScheme(address))
            return std::nullopt;
        if (const QString found = takeUser(address); !found.isEmpty())
            user = found;
    }
    const bool replaced =
        extraHeader.isEmpty() || extraHeader.startsWith(AuthorizationName, Qt::CaseInsensitive);
    if (!user.isEmpty() && replaced)
        extraHeader = authorizationOf(user);
    return joinCameraKey(scheme + address, extraHeader);
}

QString basicAuthorization(const QByteArray& user, const QByteArray& password)
{
    return AuthorizationName + " Basic "_L1 +
           QString::fromLatin1((user + ':' + password).toBase64());
}
