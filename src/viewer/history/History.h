#pragma once

#include "picture/ImageList.h"
#include "shared/Clock.h"

#include <QList>
#include <QObject>

#include <optional>

/// The images of this run, fetched, opened from files or loaded from a movie, and which of them
/// is on show. Holds values and numbers only; shows nothing.
///
/// Each image that joins a list of 45 or more drives out the oldest one, and as many more as have
/// to leave so that all hold no more than 256 MiB, but never itself; a movie alone may bring more.
/// The first field of an entry's key, up to the first field separator, is the address that the
/// image came from:
/// - fetched: address (FetchTarget::address()), separator, Last-Modified text, separator, and
///   a number that only makes the key unique;
/// - opened from a file: separator and such a number, so that the address is empty;
/// - frame of a movie: no key.
class History : public QObject
{
    Q_OBJECT

public:
    static constexpr int MaxImages = 45;
    static constexpr qint64 MaxBytes = 256 * 1024 * 1024;

    explicit History(QObject* parent = nullptr);

    /// The entries, in the order in which they came.
    const ImageList& ilHis() const { return m_ilHis; }
    int Count() const { return m_ilHis.Count(); }

    /// Number of the entry on show; 0 or out of range when none is.
    int CurrentImage() const { return m_currentImage; }
    void setCurrentImage(int n) { m_currentImage = n; }

    /// Keeps a fetched picture as the newest entry, which is then the current one. A full list
    /// gives up its oldest entries first. `camera` is the camera key to fetch it anew.
    void Append(const Still& picture, const QString& address, const QString& lastModified,
                const QString& camera = {});
    /// The same for a picture opened from a file.
    void AppendFile(const Still& picture);
    /// Keeps the next frame of a movie. There may be any number; the current entry stays.
    void AppendFrame(const Still& picture);

    /// From here to endMovie() a movie joins the list: other pictures wait, so that they follow it
    /// as if they came then. Clear() drops them, too.
    void beginMovie() { m_takesMovie = true; }
    /// Keeps what has waited. False where nothing has.
    bool endMovie();
    bool isTakingMovie() const { return m_takesMovie; }

    /// What its pictures hold in memory, those that wait for a movie included.
    qint64 heldBytes() const { return m_ilHis.heldBytes() + m_waitingBytes; }

    /// Whether entries had to leave for the newest because of its bytes.
    bool hasGivenUpBytes() const { return m_hasGivenUpBytes; }

    /// Removes the current entry; false where CurrentImage names none. CurrentImage stays.
    bool removeCurrent();
    /// Removes all entries. CurrentImage stays.
    void Clear();

    /// Makes the entry before or after the current one the current one, the newest following on
    /// the oldest; gives its number, 0 where there are none. From above Count both lead to Count.
    int back();
    int forward();

    /// The address that entry `n` came from, empty for a file; nothing for a frame of a movie or a
    /// number outside 1..Count.
    std::optional<QString> addressOf(int n) const;
    /// The camera key that entry `n` was fetched by; empty where it was not fetched.
    QString cameraOf(int n) const;
    /// When entry `n` was fetched; invalid where it was not.
    QDateTime fetchedAt(int n) const;
    /// The Last-Modified text of entry `n`; empty where it has none.
    QString lastModifiedAt(int n) const;

    /// Whether entry `n` came from `address` for `camera`, a whole camera key. An address names no
    /// port, and cameras of one host and path may differ in that alone. Without a camera on
    /// either side the address alone counts.
    bool isOf(int n, const QString& address, const QString& camera) const;
    /// The number of the newest such entry; 0 where there is none.
    int newestOf(const QString& address, const QString& camera = {}) const;
    /// The Last-Modified text of the newest such entry; empty where there is none.
    QString lastModifiedOf(const QString& address, const QString& camera = {}) const;

    /// For tests that move time.
    void setClock(const Clock& clock) { m_clock = clock; }

private:
    struct Origin
    {
        QString camera;
        QDateTime fetched;
    };

    void makeRoom(qint64 bytes);
    void remove(int n);
    void add(const Still& picture, const QString& keyHead, const Origin& origin);

    struct Waiting
    {
        Still picture;
        QString keyHead;
        Origin origin;
    };

    ImageList m_ilHis;
    /// Where each entry comes from.
    QList<Origin> m_origins;
    Clock m_clock = systemClock;
    bool m_takesMovie = false;
    QList<Waiting> m_waiting;
    qint64 m_waitingBytes = 0;
    bool m_hasGivenUpBytes = false;
    int m_currentImage = 0;
    /// How many keys have been given; the last one ends in it.
    quint64 m_keys = 0;
};
