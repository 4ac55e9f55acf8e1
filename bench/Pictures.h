#pragma once

#include <QByteArray>
#include <QColor>
#include <QList>
#include <QSize>
#include <QStringList>

/// JPEG files that are as large and as hard to decode as a camera's: the demo camera's lake
/// under a sensor's grain. Each has a field of its own plain colour in its middle, by which it is
/// known on the screen. Any two differ.
class Pictures
{
public:
    static constexpr int Count = 8;

    /// Writes Count files of `size` into `folder`. Needs a QGuiApplication.
    Pictures(const QString& folder, QSize size);

    QSize size() const { return m_size; }
    const QStringList& files() const { return m_files; }
    /// The file number `index`, counted on and on through all of them.
    const QByteArray& bytes(int index) const { return m_bytes.at(index % Count); }
    /// Colour of the field of that file: a fifth of the picture's width and height.
    static QColor mark(int index);
    /// The mean length of a file in kilobytes (of 1000 bytes).
    double meanKilobytes() const;

private:
    QSize m_size;
    QStringList m_files;
    QList<QByteArray> m_bytes;
};
