#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The camera key of what a person typed or pasted for one: an address, or a whole camera key.
///
/// - Blanks around the address and around the extra header go.
/// - Of several schemes in a row ("http://http://cam") the last stays, spelt as it is.
/// - A user and a password ("me:secret@cam", percent-encoded or not) leave the address and become
///   the extra header, see basicAuthorization(). There is room for one such line: they replace one
///   that is an authorization, too, and are dropped where there is any other.
///
/// Nothing where the address has a scheme other than http and https: no picture comes that way.
/// The rest is as typed; a host with a port ("cam:8080") has no scheme.
std::optional<QString> cleanedCameraKey(const QString& typed);

/// The request header line by which `user` signs in (RFC 7617): both in UTF-8, neither of them
/// percent-encoded. Anybody who sees the line can read them.
QString basicAuthorization(const QByteArray& user, const QByteArray& password);
