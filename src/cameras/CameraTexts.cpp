#include "cameras/CameraTexts.h"

#include "cameras/CameraKey.h"

#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

QString shownLine(const QString& text)
{
    // Laying out a longer text at every repaint would be felt, and no screen shows it.
    constexpr qsizetype Longest = 10'000;
    QString line = text.left(Longest);
    for (QChar& one : line) {
        if (one.category() == QChar::Other_Control || one == QChar::LineSeparator ||
            one == QChar::ParagraphSeparator)
            one = u' ';
    }
    return line;
}

/// One row of a tool tip.
static QString toolTipRow(const QString& text)
{
    constexpr qsizetype Longest = 500;
    // Only between words is markup wrapped: a long one is given places to break at.
    static const QRegularExpression longRun(u"(\\S{40})"_s);
    QString row = shownLine(text).left(Longest);
    if (!row.isEmpty() && row.back().isHighSurrogate())
        row.chop(1);
    return row.replace(longRun, u"\\1\u200B"_s).toHtmlEscaped();
}

QString shownToolTip(const QString& text)
{
    return u"<p>"_s + toolTipRow(text) + u"</p>"_s;
}

QString cameraToolTip(const QString& name, const QString& cameraKey)
{
    const QString address = withoutHttpScheme(splitCameraKey(cameraKey).address);
    return u"<p>"_s + toolTipRow(name) + u"<br>"_s + toolTipRow(webAddressOf(address)) + u"</p>"_s;
}
