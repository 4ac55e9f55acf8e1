#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

#include <optional>

/// One camera as lists and the directory hold it.
struct CameraRecord
{
    QString category;
    QString name;
    /// The whole camera key (see cameras/CameraKey.h), extra header included.
    QString key;

    bool operator==(const CameraRecord&) const = default;
};

/// The camera list line, spoken by list.dat, by imported lists and by the directory: category,
/// name and camera key of one camera after the other, all joined by the byte 0xFF, with none
/// before the first field nor after the last. Fields are text as shared/DiskText.h has it; address
/// and extra header of a key, joined by the byte 0x01, are each a text of their own. What surrounds
/// the line (a line end, "CAMZ") is the business of its readers.

/// Reads the cameras of a line one by one, in its order; what it holds at any time is one camera,
/// however long the line is. An incomplete triple at the end is skipped; an empty line holds none.
/// No field holds the field separator: one that stands in a UTF-8 field becomes y with a combining
/// diaeresis.
class CameraListReader
{
public:
    /// `line` has to live as long as this.
    explicit CameraListReader(QByteArrayView line);

    /// The next camera; nothing behind the last one.
    std::optional<CameraRecord> next();

private:
    bool takeField(QByteArrayView& field);

    QByteArrayView m_rest;
    bool m_more;
    QByteArrayView m_categoryBytes;
    QString m_category;
};

/// All cameras of `line`, as CameraListReader reads them.
QList<CameraRecord> readCameraListLine(QByteArrayView line);

/// The line of these cameras; empty only where there are none. For every list of records
/// readCameraListLine(writeCameraListLine(records)) gives the same records, but for what
/// toDiskField changes in a field. A line that was read is written as the same bytes where it holds
/// whole triples only, each field in the form that toDisk prefers.
QByteArray writeCameraListLine(const QList<CameraRecord>& cameras);

/// `content` without the one line end (CR LF, LF or CR) at its end, if there is one.
QByteArrayView withoutLineEnd(QByteArrayView content);
