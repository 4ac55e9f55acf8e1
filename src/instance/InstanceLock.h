#pragma once

#include "platform/FileLock.h"

/// Where the instances of the program meet that are one user's and share one application folder.
/// The one that holds the place serves: it listens under serverName(). Ends with the process,
/// however that ends.
class InstanceLock
{
public:
    explicit InstanceLock(const QString& applicationFolder);

    /// Takes the place, without waiting, where no other instance holds it. Impossible where the
    /// user has no private folder that can be trusted: then no instance serves.
    FileLock::Result take();

    /// Gives the place to whoever takes it next.
    void leave() { m_lock.release(); }

    /// For QLocalServer and QLocalSocket; empty where meeting is impossible.
    QString serverName() const;

private:
    /// The files of this place begin so; empty without a private folder.
    QString m_path;
    FileLock m_lock;
};

/// What is said there. A message is its kind, its text in UTF-8, and a NUL; one a connection.
namespace meeting {

enum class Kind : char {
    File = 'F', ///< a file to open; answered by Taken
    Line = 'L'  ///< another instance, which stands in line to serve next; never answered
};

/// The answer to a file: the receiver has it and the sender can go.
constexpr char Taken = 'T';

/// The most bytes of a message, with its kind and without its NUL: no path is that long.
constexpr qsizetype MaxBytes = 32'000;

/// The message as it is sent; empty where it would be too long or `text` holds a NUL.
QByteArray messageOf(Kind kind, const QString& text = {});

} // namespace meeting
