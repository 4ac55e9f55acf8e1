#pragma once

#include <QString>
#include <QStringView>

#include <span>

class QObject;

/// One caption that a language file may replace.
struct CaptionRow
{
    QStringView key;            ///< in section MAIN of the file
    QStringView defaultCaption; ///< shown where the file lacks the key or its value is empty
    QStringView control;        ///< objectName of the control that bears it
};

/// All captions of a language file, in the order in which they are applied. A key may stand in it
/// more than once.
std::span<const CaptionRow> captionTable();

/// Gives every control of the table its caption from the language file `path`: menu entries,
/// menus, buttons, labels and what has a property Caption below `root`, found by objectName; other
/// windows below `root` (not menus) are left out, and a control that is not there is skipped. Of
/// several of one name the one nearest to `root` is meant.
///
/// A caption is plain text and shows as it stands in the file, ampersands too. A label takes
/// Qt::PlainText as its format; give it its buddy before, because that decides what an ampersand
/// in a label means.
void ApplyLanguageCaptions(QObject& root, const QString& path);
