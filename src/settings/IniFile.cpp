#include "settings/IniFile.h"

#include "shared/DiskText.h"

namespace {

bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t';
}

bool isLineEnd(char byte)
{
    return byte == '\r' || byte == '\n';
}

QByteArrayView trimmed(QByteArrayView bytes)
{
    while (!bytes.isEmpty() && isBlank(bytes.front()))
        bytes = bytes.sliced(1);
    while (!bytes.isEmpty() && isBlank(bytes.back()))
        bytes.chop(1);
    return bytes;
}

QByteArrayView withoutLineEnd(QByteArrayView line)
{
    while (!line.isEmpty() && isLineEnd(line.back()))
        line.chop(1);
    return line;
}

/// The line that begins at `from`, its end included.
QByteArrayView lineAt(QByteArrayView bytes, qsizetype from)
{
    qsizetype end = from;
    while (end < bytes.size() && !isLineEnd(bytes[end]))
        ++end;
    if (end < bytes.size())
        end += bytes.sliced(end).startsWith("\r\n") ? 2 : 1;
    return bytes.sliced(from, end - from);
}

/// What a reader makes of the bytes after the equals sign.
QByteArrayView readBack(QByteArrayView value)
{
    value = trimmed(value);
    if (value.size() >= 2 && value.front() == value.back() &&
        (value.front() == '"' || value.front() == '\''))
        value = value.sliced(1, value.size() - 2);
    return value;
}

QByteArrayView keyOf(QByteArrayView line)
{
    return trimmed(line.first(line.indexOf('=')));
}

QByteArrayView valueOf(QByteArrayView line)
{
    return readBack(withoutLineEnd(line.sliced(line.indexOf('=') + 1)));
}

/// The one spelling under which all spellings of a name are found. Upper case comes first,
/// because a name may be written in capitals that fold to other letters than it does itself.
QString canonical(const QString& name)
{
    return name.trimmed().toUpper().toCaseFolded();
}

bool hasLineBreak(const QString& text)
{
    return text.contains(u'\r') || text.contains(u'\n');
}

bool isSectionName(const QString& name)
{
    return !name.contains(u']') && !hasLineBreak(name);
}

bool isKeyName(const QString& name)
{
    const QString inner = name.trimmed();
    return !inner.isEmpty() && inner.front() != u';' && inner.front() != u'[' &&
           !inner.contains(u'=') && !hasLineBreak(inner);
}

QByteArray encodedValue(QString value)
{
    value.replace(QLatin1StringView("\r\n"), QLatin1StringView(" "));
    value.replace(u'\r', u' ');
    value.replace(u'\n', u' ');
    const QByteArray bytes = toDisk(value);
    return readBack(bytes) == bytes ? bytes : '"' + bytes + '"';
}

} // namespace

IniFile::IniFile()
    : m_sections(1)
{
}

bool IniFile::parse(const QByteArray& bytes)
{
    *this = IniFile();
    m_source = bytes;
    const QByteArrayView content = withoutByteOrderMark(m_source);
    m_mark = m_source.first(m_source.size() - content.size());

    qsizetype counted = 0;
    for (qsizetype at = 0; at < content.size();) {
        const QByteArrayView line = lineAt(content, at);
        at += line.size();
        const QByteArrayView inner = trimmed(withoutLineEnd(line));
        if (inner.isEmpty()) {
            appendLine(m_sections.back(), line, Kind::Blank);
            continue;
        }
        const qsizetype closing = inner.front() == '[' ? inner.indexOf(']') : -1;
        if (closing > 0) {
            Section& section = addSection(fromDisk(inner.sliced(1, closing - 1)));
            appendLine(section, line, Kind::Other);
        } else if (inner.front() == ';' || inner.front() == '[' || inner.indexOf('=') <= 0) {
            appendLine(m_sections.back(), line, Kind::Other);
            continue;
        } else {
            Section& section = m_sections.back();
            const QString key = canonical(fromDisk(keyOf(inner)));
            if (section.keys.contains(key))
                section.repeatsKeys = true;
            else
                section.keys.insert(key, section.lines.size());
            appendLine(section, line, Kind::Key);
        }
        if (++counted > MaxLines) {
            *this = IniFile();
            return false;
        }
    }
    return true;
}

QString IniFile::value(const QString& section, const QString& key) const
{
    const std::size_t index = indexOf(section);
    if (index == None)
        return {};
    const Section& found = m_sections[index];
    const auto line = found.keys.constFind(canonical(key));
    return line == found.keys.constEnd() ? QString() : fromDisk(valueOf(found.lines[*line].bytes));
}

QStringList IniFile::keys(const QString& section) const
{
    const std::size_t index = indexOf(section);
    return index == None ? QStringList() : QStringList(m_sections[index].keys.keys());
}

bool IniFile::setValue(const QString& section, const QString& key, const QString& value)
{
    if (!isSectionName(section) || !isKeyName(key))
        return false;
    const QByteArray diskKey = toDisk(key.trimmed());
    const QByteArray diskValue = encodedValue(value);
    const QByteArray line = diskKey + '=' + diskValue + "\r\n";
    const QString name = canonical(key);

    std::size_t index = indexOf(section);
    if (index == None) {
        endLastLine(m_sections.back().lines, m_sections.back().lines.size());
        index = m_sections.size();
        addSection(section).lines.push_back({'[' + toDisk(section) + "]\r\n", Kind::Other});
    }
    Section& found = m_sections[index];
    const auto existing = found.keys.constFind(name);
    if (existing == found.keys.constEnd()) {
        insertKey(found, name, line);
        return true;
    }
    QByteArray& old = found.lines[*existing].bytes;
    if (keyOf(old) == diskKey && valueOf(old) == readBack(diskValue))
        return false;
    old = line;
    return true;
}

bool IniFile::removeKey(const QString& section, const QString& key)
{
    const std::size_t index = indexOf(section);
    if (index == None)
        return false;
    Section& found = m_sections[index];
    const QString name = canonical(key);
    const auto first = found.keys.constFind(name);
    if (first == found.keys.constEnd())
        return false;
    const std::size_t firstLine = *first;
    found.keys.erase(first);
    if (found.repeatsKeys) {
        for (std::size_t i = found.lines.size() - 1; i > firstLine; --i) {
            const Line& line = found.lines[i];
            if (line.kind == Kind::Key && canonical(fromDisk(keyOf(line.bytes))) == name)
                clearLine(found, i);
        }
    }
    clearLine(found, firstLine);
    return true;
}

QByteArray IniFile::bytes() const
{
    qsizetype size = m_mark.size();
    for (const Section& section : m_sections) {
        for (const Line& line : section.lines)
            size += line.bytes.size();
    }
    QByteArray result;
    result.reserve(size);
    result += m_mark;
    for (const Section& section : m_sections) {
        for (const Line& line : section.lines)
            result += line.bytes;
    }
    return result;
}

std::size_t IniFile::indexOf(const QString& section) const
{
    return m_byName.value(canonical(section), None);
}

IniFile::Section& IniFile::addSection(const QString& name)
{
    const QString canonicalName = canonical(name);
    if (!m_byName.contains(canonicalName))
        m_byName.insert(canonicalName, m_sections.size());
    return m_sections.emplace_back();
}

void IniFile::insertKey(Section& section, const QString& canonicalKey, const QByteArray& line)
{
    std::size_t at = section.lines.size();
    while (at > 0 && section.lines[at - 1].kind == Kind::Blank)
        --at;
    endLastLine(section.lines, at);
    section.lines.insert(section.lines.begin() + std::ptrdiff_t(at), Line{line, Kind::Key});
    section.keys.insert(canonicalKey, at);
}

void IniFile::appendLine(Section& section, QByteArrayView line, Kind kind)
{
    // Lines that nobody asks for by name are kept in one piece with those above them, so that a
    // file of empty lines costs no more than its bytes. Blanks stay apart from a text above
    // them: a new key goes in between.
    const auto joins = [&](const Line& last) {
        return kind != Kind::Key && last.kind != Kind::Key &&
               (kind == Kind::Other || last.kind == Kind::Blank) &&
               last.bytes.constEnd() == line.begin();
    };
    const char* begin = line.begin();
    while (!section.lines.empty() && joins(section.lines.back())) {
        begin = section.lines.back().bytes.constBegin();
        section.lines.pop_back();
    }
    section.lines.push_back({QByteArray::fromRawData(begin, line.end() - begin), kind});
}

void IniFile::endLastLine(std::vector<Line>& lines, std::size_t count)
{
    while (count > 0 && lines[count - 1].bytes.isEmpty())
        --count;
    if (count > 0 && !isLineEnd(lines[count - 1].bytes.back()))
        lines[count - 1].bytes += "\r\n";
}

void IniFile::clearLine(Section& section, std::size_t index)
{
    section.lines[index] = {QByteArray(), Kind::Blank};
    while (!section.lines.empty() && section.lines.back().bytes.isEmpty())
        section.lines.pop_back();
}
