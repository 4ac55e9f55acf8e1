#include "Pictures.h"

#include "Scene.h"

#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int Quality = 85;
/// How far the grain goes up and down: chosen so that 3840x2160 makes about 1 MB.
constexpr int Grain = 6;

/// Grain of the sensor, the same for all three colours, as a camera's noise reduction leaves it.
void addGrain(QImage& image, quint32 seed)
{
    quint32 state = seed * 2654435761U + 1;
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        int last = 0;
        for (int x = 0; x < image.width(); ++x) {
            state = state * 1664525U + 1013904223U;
            const int fresh = int(state >> 16) % (2 * Grain + 1) - Grain;
            last = (last + fresh) / 2;
            const auto with = [&](int part) { return std::clamp(part + last, 0, 255); };
            line[x] = qRgb(with(qRed(line[x])), with(qGreen(line[x])), with(qBlue(line[x])));
        }
    }
}

QByteArray encoded(const QImage& image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(Quality);
    if (!writer.write(image))
        qFatal("bench: a test picture cannot be encoded");
    return buffer.data();
}

} // namespace

Pictures::Pictures(const QString& folder, QSize size)
    : m_size(size)
{
    const QDateTime moment(QDate(2020, 6, 21), QTime(12, 0));
    constexpr quint64 noon = 24;
    for (int i = 0; i < Count; ++i) {
        QImage image = Scene::draw(moment.addSecs(i), noon + quint64(i), size)
                           .convertToFormat(QImage::Format_RGB32);
        addGrain(image, quint32(i));
        const QSize field = size / 5;
        QPainter(&image).fillRect((size.width() - field.width()) / 2,
                                  (size.height() - field.height()) / 2, field.width(),
                                  field.height(), mark(i));
        m_bytes.append(encoded(image));
        m_files.append(QStringLiteral("%1/%2x%3-%4.jpg")
                           .arg(folder)
                           .arg(size.width())
                           .arg(size.height())
                           .arg(i));
        QFile file(m_files.last());
        if (!file.open(QIODevice::WriteOnly) || file.write(m_bytes.last()) != m_bytes.last().size())
            qFatal("bench: cannot write %s", qPrintable(file.fileName()));
    }
}

QColor Pictures::mark(int index)
{
    const int number = index % Count;
    const auto level = [&](int bit) { return number & bit ? 215 : 40; };
    return {level(1), level(2), level(4)};
}

double Pictures::meanKilobytes() const
{
    qsizetype sum = 0;
    for (const QByteArray& bytes : m_bytes)
        sum += bytes.size();
    return double(sum) / Count / 1000;
}
