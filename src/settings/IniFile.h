#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

/// One ini file in memory, by the rules of Windows' private profiles: "[section]" lines, below
/// them "key=value" lines.
///
/// Reading: sections and keys match without regard to case, the first section of a name and the
/// first key of a name in it win. Blanks (space, tab) around section, key and value are dropped,
/// and one pair of quotes (' or ") around the value. Lines end with LF, CR LF or CR. A line that
/// begins with ';' is a comment. Text is as shared/DiskText.h has it; a byte order mark at the
/// start is skipped.
///
/// Writing: every line that is not itself set or removed stays as it is, byte for byte. A line
/// that is set ends with CR LF. A new key goes after the last non-blank line of its section, a new
/// section to the end of the file. What would not read back as written (outer blanks, outer
/// quotes) is written in double quotes; a line break in it becomes one blank.
///
/// Looking up, setting and appending a key take the same time in a file of any length.
class IniFile
{
public:
    /// A file with more section and key lines than this is no ini file.
    static constexpr qsizetype MaxLines = 1'000'000;

    IniFile();

    /// Takes the content of a file in place of what was there. Returns false, and is empty then,
    /// for a file of more than MaxLines; nothing else is an error.
    bool parse(const QByteArray& bytes);

    /// The value of a key, whole; empty where there is no such section or key.
    QString value(const QString& section, const QString& key) const;

    /// The different keys of the section, in no particular order and in small letters; none where
    /// there is no section of that name.
    QStringList keys(const QString& section) const;

    /// Sets a key, creates it and its section where they are missing, and writes the key as it is
    /// spelt here. Returns whether that changed a byte of the file. A section or key that could
    /// never be read again is not written: a section with ']', a key that is empty, contains '='
    /// or begins with ';' or '[', and either with a line break.
    bool setValue(const QString& section, const QString& key, const QString& value);

    /// Removes a key, all lines of it. Returns whether there was one.
    bool removeKey(const QString& section, const QString& key);

    /// The content of the file.
    QByteArray bytes() const;

private:
    enum class Kind { Key, Other, Blank };

    /// One key line, or several others in a row. A line from the file points into m_source.
    struct Line
    {
        QByteArray bytes;
        Kind kind;
    };

    struct Section
    {
        std::vector<Line> lines;          // its own "[section]" line too
        QHash<QString, std::size_t> keys; // canonical name to index of its first line
        bool repeatsKeys = false;
    };

    std::size_t indexOf(const QString& section) const;
    Section& addSection(const QString& name);
    static void insertKey(Section& section, const QString& canonicalKey, const QByteArray& line);
    static void appendLine(Section& section, QByteArrayView line, Kind kind);
    static void endLastLine(std::vector<Line>& lines, std::size_t count);
    static void clearLine(Section& section, std::size_t index);

    static constexpr auto None = static_cast<std::size_t>(-1);

    QByteArray m_mark;                    // the byte order mark, if any
    QByteArray m_source;                  // the file as it was read
    std::vector<Section> m_sections;      // the first one holds what stands above all sections
    QHash<QString, std::size_t> m_byName; // canonical name to index of the first of that name
};
