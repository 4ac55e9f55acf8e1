#pragma once

#include "shared/Clock.h"
#include "shared/ImageList.h"

#include <QObject>
#include <QString>

/// The images of this run, at most 45 as they are fetched, and which of them is on show.
///
/// The key of a fetched image is its address (host and path), the field separator, its
/// Last-Modified text, the field separator, and random digits that only make the key unique.
class History : public QObject
{
    Q_OBJECT

public:
    static constexpr int MaxImages = 45;

    explicit History(QObject* parent = nullptr);

    /// The entries, in the order in which they came.
    const ImageList& ilHis() const { return m_ilHis; }

    /// Number of the entry on show; 0 or out of range when none is.
    int CurrentImage() const { return m_currentImage; }

    /// Keeps a fetched picture as the newest entry, which is then the current one. A full list
    /// gives up its oldest entry first and says so.
    void Append(const Still& picture, const QString& address, const QString& lastModified);

    /// The Last-Modified text of the newest entry of `address`; empty where there is none.
    QString lastModifiedOf(const QString& address) const;

    /// The random tails of keys are seeded from `clock` before each key.
    void setClock(const Clock& clock) { m_clock = clock; }

signals:
    /// Entry 1 has been removed to make room.
    void OldestRemoved();

private:
    ImageList m_ilHis;
    Clock m_clock = systemClock;
    int m_currentImage = 0;
};
