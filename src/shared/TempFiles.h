#pragma once

#include <QString>

class QFile;

/// The temporary files in the application folder. Each is a copy that nothing reads, made for
/// the user alone (0600): one that cannot be written costs only itself and is not reported.
namespace tempFiles {

/// Of what is being fetched: "tt." and `extension`, "bmp", "gif" or "jpg" in whatever case.
QString ofFetch(const QString& folder, const QString& extension);
/// Of each frame of a movie that is being loaded: "tt.jpg".
QString ofLoading(const QString& folder);
/// Of each frame of a movie that is being saved: "pvm.jpg". It stays for good.
QString ofSaving(const QString& folder);

/// Opens `file` at `path` for what comes piece by piece, in place of an old one.
void openAnew(QFile& file, const QString& path);

/// What becomes of an older, longer file's bytes behind the new ones.
enum class OldEnd {
    Cut,
    Stays,
};

/// Writes `bytes` into `path`, over what it holds from its beginning. Nothing is written through a
/// path that is there already and is no ordinary file of one name: a folder, a link (symbolic or
/// hard), a pipe, a device.
void write(const QString& path, const QByteArray& bytes, OldEnd oldEnd);

/// Deletes "pvm.bmp", "tt.jpg", "tt.gif" and "tt.bmp", whatever case their names are in. A missing
/// file is no error.
void removeAll(const QString& folder);

} // namespace tempFiles
