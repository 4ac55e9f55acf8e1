#pragma once

#include <QByteArray>
#include <QMap>

/// What this process holds of the machine at one moment.
struct Resources
{
    qint64 residentKilobytes = 0;
    /// What of the heap is given out, whatever the allocator keeps beside.
    qint64 heapKilobytes = 0;
    int descriptors = 0;
    /// How many of each kind the X server keeps for it ("WINDOW", "PIXMAP", ...).
    QMap<QByteArray, quint32> onServer;
    /// The bytes of all pixmaps there.
    quint64 pixmapBytes = 0;

    /// Counted now. The program needs a QGuiApplication on an X server with the extension
    /// X-Resource; it ends with a message where that is missing.
    static Resources now();

    /// Gives what is free in the heap back to the system, and tells the kilobytes that stay.
    static qint64 residentAfterTrimming();
};
