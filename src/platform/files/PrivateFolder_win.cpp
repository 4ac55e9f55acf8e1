#include "platform/files/PrivateFolder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 SecretBytes = 32;

/// A secret that only the user can read; made at the first call.
QByteArray secretOf(const QString& path)
{
    QFile file(path + ".secret"_L1);
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        QByteArray secret(SecretBytes, Qt::Uninitialized);
        QRandomGenerator::system()->generate(secret.begin(), secret.end());
        file.write(secret);
        file.close();
    }
    return file.open(QIODevice::ReadOnly) ? file.read(SecretBytes) : QByteArray();
}

} // namespace

QString privateFolder()
{
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + "/pevora"_L1;
    return QDir().mkpath(folder) ? folder : QString();
}

QString localServerName(const QString& path)
{
    // Names of pipes are the whole machine's: one that could be guessed could be taken first.
    const QByteArray secret = secretOf(path);
    if (secret.size() != SecretBytes)
        return {};
    const QByteArray hash =
        QCryptographicHash::hash(path.toUtf8() + secret, QCryptographicHash::Sha256);
    return "pevora-"_L1 + QString::fromLatin1(hash.toHex());
}
