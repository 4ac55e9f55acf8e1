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

/// `url` without a leading "http://", in whatever letter case; the rest as given.
QString withoutHttpScheme(const QString& url);

/// Everything before the first "/" of an address without its scheme: host and port.
QString hostPartOf(QStringView address);
