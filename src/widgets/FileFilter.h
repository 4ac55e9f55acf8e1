#pragma once

#include <QString>
#include <QStringList>

/// The filters of the file dialogs: for each entry its text and its patterns (parted by
/// semicolons), each ended by a bar.
namespace fileFilter {

using namespace Qt::Literals::StringLiterals;

constexpr auto ImagesToOpen = "Image Files (*.bmp,*.jpg,*.gif)|*.bmp;*.jpg;*.gif|"_L1;
constexpr auto ImagesToSave = "Bitmap (*.bmp)|*.bmp|GIF (*.gif)|*.gif|JPEG (*.jpg)|*.jpg|"_L1;
constexpr auto Movies = "Pevora Movie (*.pvm)|*.pvm|"_L1;

/// `filter` as Qt's name filters, one for each entry: the text, and behind it the patterns in
/// parentheses. A dialog with QFileDialog::HideNameFilterDetails hides that last group alone and
/// so shows the text as it is. An entry without patterns is left out.
QStringList toNameFilters(const QString& filter);

} // namespace fileFilter
