#include "viewer/surface/DebugBox.h"

#include <QFontDatabase>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

DebugBox::DebugBox(QWidget* parent)
    : QPlainTextEdit(parent)
{
    setObjectName(u"txtDebug"_s);
    setAccessibleName(tr("Received data"));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setLineWrapMode(NoWrap);
    setMaximumBlockCount(MaxLines);
    hide();
}

/// A font is looked up and loaded when it is set, and few people ever see this one.
void DebugBox::showEvent(QShowEvent* event)
{
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    QPlainTextEdit::showEvent(event);
}

void DebugBox::startAnew()
{
    clear();
    m_column = 0;
    m_returnWaits = false;
}

void DebugBox::addChunk(const QByteArray& chunk)
{
    if (isHidden())
        return;
    // What would scroll out at once is not even looked at.
    constexpr qsizetype mostBytes = MaxLines * LineLength / 2;
    const QByteArrayView seen = QByteArrayView(chunk).last(std::min(chunk.size(), mostBytes));
    QString text;
    text.reserve(seen.size() + seen.size() / LineLength);
    const auto add = [&](QChar character) {
        if (m_column == LineLength) {
            text += u'\n';
            m_column = 0;
        }
        text += character.category() == QChar::Other_Control ? QChar(0xB7) : character;
        ++m_column;
    };
    for (const char byte : seen) {
        const bool returnWaited = std::exchange(m_returnWaits, byte == '\r');
        if (byte == '\n') {
            text += u'\n';
            m_column = 0;
            continue;
        }
        if (returnWaited)
            add(u'\r');
        if (!m_returnWaits)
            add(QLatin1Char(byte));
    }
    QTextCursor cursor(document());
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(text);
}
