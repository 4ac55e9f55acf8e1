#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

/// Text in files and on the wire. Files of old are in a single-byte code page (see
/// platform/CodePage.h), which lacks most of the world's characters; so a field that the page
/// cannot hold is UTF-8, and a reader tells the two apart by the bytes alone. A reader splits
/// bytes into fields first and turns each field into text after that.

/// The text of one field: UTF-8 where the bytes are valid UTF-8, else the code page. A byte order
/// mark is a character of the field like any other: see withoutByteOrderMark.
QString fromDisk(QByteArrayView field);

/// The bytes of a text: in the code page where that holds every character and reads back as the
/// same text, else UTF-8. For every text fromDisk(toDisk(text)) == text, except that half of a
/// surrogate pair, which is no character, becomes a question mark.
QByteArray toDisk(const QString& text);

/// As toDisk, for a field in a record whose separator is the byte 0xFF: the result never contains
/// that byte. A "ÿ", which is that byte in windows-1252, becomes y with a combining diaeresis,
/// which looks the same.
QByteArray toDiskField(const QString& text);

/// What follows a UTF-8 byte order mark (EF BB BF) at the start of a file; all of a file that has
/// none. The result points into `file`.
QByteArrayView withoutByteOrderMark(QByteArrayView file);
