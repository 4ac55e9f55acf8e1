#pragma once

#include <QString>

#include <optional>

class MessageQueue;
class QComboBox;
class QLineEdit;

/// Keeps what is typed or pasted into `box` clean as cleanInput does, with the caret where it was.
/// A text that the program sets stays as it is.
void cleanWhileTyping(QLineEdit* box, bool keepHeaderMark = false);

/// Keeps both boxes clean, and gives each its half of a camera key that is pasted into `url`.
void cleanKeyWhileTyping(QLineEdit* url, QLineEdit* header);

/// Makes `box` one that offers categories and takes the name of a new one, as it is typed.
void takeCategories(QComboBox* box);

/// Room for every text: a box would cut a long one from a file, and lose its end.
void takeTextsOfAnyLength(QLineEdit* box);

/// The category in `box`: one that it offers as it is, any other without the blanks around it.
QString enteredCategory(const QComboBox& box);

/// The camera key that was typed or pasted, by cleanedCameraKey(). Where that finds none,
/// `messages` tells so.
std::optional<QString> takeCameraKey(const QString& typed, MessageQueue& messages);
