#include "shared/ShownCamera.h"

#include "shared/CameraKey.h"

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

QString cameraToolTip(const QString& name, const QString& cameraKey)
{
    constexpr qsizetype Longest = 500;
    const auto row = [](const QString& text) { return text.left(Longest).toHtmlEscaped(); };
    const QString address = splitCameraKey(cameraKey).address;
    return u"<p>%1<br>%2</p>"_s.arg(row(shownLine(name)),
                                    row(webAddressOf(withoutHttpScheme(address))));
}
