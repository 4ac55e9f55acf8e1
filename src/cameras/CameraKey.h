#pragma once

#include <QChar>
#include <QString>
#include <QStringView>

/// Joins a camera's address and its extra request header line in a camera key.
inline constexpr QChar HeaderMark{0x01};

/// Joins the fields of list lines, history keys and the manager's keys. No user field holds it.
inline constexpr QChar FieldSeparator{0xFF};

/// The two halves of a camera key. The whole key travels wherever a camera is passed; only the
/// viewer and the editor split it.
struct CameraKey
{
    /// The address up to the first header mark: host, optional ":" and port, and path.
    QString address;
    /// All that follows the first header mark: one request header line, or empty.
    QString extraHeader;
};

/// Cuts `key` at its first header mark. A key without one is all address.
CameraKey splitCameraKey(const QString& key);

/// The key of these two halves: the address alone where there is no extra header.
QString joinCameraKey(const QString& address, const QString& extraHeader);

// An address is kept without "http://", which goes without saying, and with "https://", which makes
// it another camera. These functions alone know of the two.

/// What a secure address begins with, in whatever letter case.
inline constexpr QLatin1StringView SecureScheme{"https://"};

/// `url` without a leading "http://", in whatever letter case; the rest as given.
QString withoutHttpScheme(const QString& url);

/// `key` as every way of writing the scheme of its address has it: without "http://", and with
/// "https://" in lower case. Two keys are one camera where these are the same.
QString comparableKey(const QString& key);

/// Whether `address` begins with "https://": its camera is asked over TLS.
bool isSecureAddress(QStringView address);

/// Whether `text` begins with "http://" or "https://", and so is an address and no name.
bool hasWebScheme(QStringView text);

/// `address` as people and browsers know it: "http://" before a plain one, a secure one as it is.
QString webAddressOf(const QString& address);

/// Everything before the first "/" of an address: host and port, after the "https://" of a secure
/// one, which is always in lower case here.
QString hostPartOf(QStringView address);
