#include "ReadBack.h"

#include "Victim.h"

#include "cameras/CameraListLine.h"
#include "camlist/Favourites.h"
#include "viewer/movie/MovieFile.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QRegularExpression>
#include <QtEndian>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Decoders forgive a cut file: its end is looked at, too.
bool isWholePicture(QByteArray bytes)
{
    const bool hasEnd = bytes.startsWith("BM")
                            ? bytes.size() > 6 && qFromLittleEndian<quint32>(bytes.data() + 2) ==
                                                      quint32(bytes.size())
                        : bytes.startsWith("GIF") ? bytes.endsWith(';')
                                                  : bytes.endsWith("\xFF\xD9");
    QBuffer buffer(&bytes);
    const QImage image = QImageReader(&buffer).read();
    return hasEnd && image.size() == QSize(victim::WidthPx, victim::HeightPx);
}

} // namespace

ReadBack::ReadBack(const QString& folder, const QString& saved)
    : m_folder(folder)
    , m_saved(saved)
{
}

void ReadBack::prepare()
{
    QList<CameraRecord> cameras;
    for (int i = 1; i <= victim::Cameras; ++i)
        cameras.append({victim::category(), victim::nameOf(i), victim::keyOf(i)});
    QFile file(QDir(m_folder).filePath(u"list.dat"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(writeCameraListLine(cameras) + "\r\n") < 0)
        qFatal("bench: cannot write a list");
    m_last = victim::Cameras;
}

void ReadBack::learnPreferences()
{
    m_keys = preferenceKeys();
    if (m_keys.isEmpty())
        qFatal("bench: no preferences were written");
}

QStringList ReadBack::faults(int run)
{
    QStringList found{listFault(), preferencesFault(run), movieFault()};
    for (const QString& name : victim::savedImages())
        found += imageFault(name);
    found.removeAll(QString());
    return found;
}

/// Running numbers from the first to the last; every second save is of one camera less.
QString ReadBack::listFault()
{
    const QByteArray content = contentOf(QDir(m_folder).filePath(u"list.dat"_s));
    if (!content.endsWith("\r\n"))
        return u"list.dat has no end, and %1 bytes"_s.arg(content.size());
    const auto cameras = readCameraListLine(withoutLineEnd(content));
    if (cameras.size() < victim::Cameras - 1 || cameras.size() > victim::Cameras)
        return u"list.dat has %1 cameras"_s.arg(cameras.size());
    const int first = cameras.first().name.section(u' ', -1).toInt();
    for (qsizetype i = 0; i < cameras.size(); ++i) {
        const int number = first + int(i);
        if (cameras[i] !=
            CameraRecord{victim::category(), victim::nameOf(number), victim::keyOf(number)})
            return u"list.dat has another camera in place of %1"_s.arg(number);
    }
    const int last = first + int(cameras.size()) - 1;
    if (last < m_last || first < m_first)
        return u"list.dat ends at %1, and ended at %2 before"_s.arg(last).arg(m_last);
    m_first = first;
    m_last = last;
    ++lists;
    return {};
}

QSet<QByteArray> ReadBack::preferenceKeys() const
{
    QSet<QByteArray> keys;
    QByteArray section;
    for (const QByteArray& line : contentOf(QDir(m_folder).filePath(u"pref.ini"_s)).split('\n')) {
        if (line.startsWith('['))
            section = line.trimmed();
        else if (line.contains('='))
            keys += section + line.left(line.indexOf('='));
    }
    return keys;
}

QString ReadBack::preferencesFault(int run)
{
    const QString path = QDir(m_folder).filePath(u"pref.ini"_s);
    const qsizetype missing = (QSet(m_keys) - preferenceKeys()).size();
    if (missing > 0)
        return u"pref.ini lacks %1 of %2 keys"_s.arg(missing).arg(m_keys.size());
    Favourites favourites;
    favourites.load(path);
    if (favourites.entries().size() != victim::Favourites)
        return u"pref.ini has %1 favourites"_s.arg(favourites.entries().size());
    const QString key = favourites.entries().first().key;
    for (const Favourite& one : favourites.entries()) {
        if (one.key != key)
            return u"pref.ini has favourites of two runs"_s;
    }
    const int ofRun = key.section(u'/', -1).toInt();
    if (ofRun < m_favouritesRun || ofRun > run)
        return u"pref.ini has favourites of run %1 after those of %2"_s.arg(ofRun).arg(
            m_favouritesRun);
    m_favouritesRun = ofRun;
    ++preferences;
    newPreferences += ofRun == run;
    return {};
}

QString ReadBack::imageFault(const QString& name)
{
    const QByteArray content = contentOf(QDir(m_saved).filePath(name));
    if (!isWholePicture(content))
        return u"%1 is no whole picture, of %2 bytes"_s.arg(name).arg(content.size());
    ++images;
    return {};
}

QString ReadBack::movieFault()
{
    const QByteArray content = contentOf(QDir(m_saved).filePath(victim::savedMovie()));
    MovieScan scan(content.size());
    while (!scan.isDone())
        scan.take(QByteArrayView(content).sliced(scan.position(), scan.count()));
    int frames = 0;
    for (const MoviePart& part : scan.parts())
        frames += isWholePicture(content.mid(part.begin, part.size));
    if (frames != victim::Pictures || scan.parts().size() != victim::Pictures)
        return u"a.pvm has %1 whole frames in %2 parts"_s.arg(frames).arg(scan.parts().size());
    ++movies;
    return {};
}

int ReadBack::leftOver() const
{
    static const QRegularExpression known(
        u"^(pevora|list\\.dat|pref\\.ini|tt\\..*|pvm\\.jpg|a\\....|source\\d\\.jpg)$"_s);
    constexpr auto files = QDir::Files | QDir::Hidden;
    QStringList names = QDir(m_folder).entryList(files) + QDir(m_saved).entryList(files);
    names.removeIf([](const QString& name) { return known.match(name).hasMatch(); });
    return int(names.size());
}
