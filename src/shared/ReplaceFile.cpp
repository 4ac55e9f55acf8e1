#include "shared/ReplaceFile.h"

#include "platform/files/FileOwner.h"
#include "platform/files/SyncFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <optional>

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("ReplaceFile", text);
}

/// Of a write that went in part Qt has no reason: one more meets it.
QString reasonOfFailedWrite(QSaveFile& file)
{
    const QString first = file.errorString();
    file.unsetError();
    if (file.write("\n") > 0)
        file.flush();
    return file.error() == QFileDevice::NoError ? first : file.errorString();
}

/// Why the new bytes are not in place; nothing where they are.
std::optional<QString> failureOfReplacing(const QString& path, const QByteArray& bytes,
                                          NewFile newFile)
{
    if (!isOwnLink(path))
        return translated("Is a link of another user");
    const QFileInfo old(path);
    if (old.isDir())
        return translated("Is a directory");
    if (old.exists() && !old.isFile())
        return translated("Is no ordinary file");
    // QSaveFile refuses it too, and repeats the whole path in its reason.
    if (old.exists() && !old.isWritable())
        return translated("Permission denied");

    QSaveFile file(path);
    {
        std::optional<PrivateCreation> closed;
        if (newFile == NewFile::Private)
            closed.emplace();
        if (!file.open(QIODevice::WriteOnly))
            return file.errorString();
    }
    // QSaveFile (Qt 6.4) takes a full disk for a success where the failure comes only when its
    // buffer is flushed, and then puts an empty or cut file in the place of the old one.
    const auto cancelled = [&file](const QString& reason) {
        file.cancelWriting();
        file.commit();
        return std::optional(reason);
    };
    if (file.write(bytes) != bytes.size() || !file.flush() || file.error() != QFileDevice::NoError)
        return cancelled(reasonOfFailedWrite(file));
    if (!syncFile(file))
        return cancelled(qt_error_string());
    if (file.size() != bytes.size())
        return cancelled(translated("Not all of it was written"));
    return file.commit() ? std::nullopt : std::optional(file.errorString());
}

/// Whether QSaveFile made up `ending`, and no person did.
bool isMadeUp(QStringView ending)
{
    constexpr qsizetype length = 6;
    const auto isSmall = [](QChar one) { return one >= u'a' && one <= u'z'; };
    const auto isCapital = [](QChar one) { return one >= u'A' && one <= u'Z'; };
    if (ending.size() != length || !std::all_of(ending.begin(), ending.end(), [&](QChar one) {
            return isSmall(one) || isCapital(one);
        }))
        return false;
    // A word begins with a capital at the most, or has nothing else.
    const QStringView rest = ending.sliced(1);
    return std::any_of(rest.begin(), rest.end(), isCapital) &&
           std::any_of(ending.begin(), ending.end(), isSmall);
}

} // namespace

void removeLeftovers(const QString& path)
{
    const QFileInfo file(path);
    const QString beginning = file.fileName() + QLatin1Char('.');
    const QDir folder = file.dir();
    for (const QString& name : folder.entryList(QDir::Files | QDir::Hidden | QDir::System)) {
        const QString other = folder.filePath(name);
        if (name.startsWith(beginning) && isMadeUp(QStringView(name).sliced(beginning.size())) &&
            isOwnFile(other))
            QFile::remove(other);
    }
}

bool replaceFile(const QString& path, const QByteArray& bytes, QString* reason, NewFile newFile)
{
    const std::optional<QString> failure = failureOfReplacing(path, bytes, newFile);
    if (reason)
        *reason = failure.value_or(QString());
    return !failure;
}
