#include "widgets/InputBoxes.h"

#include "cameras/CameraKey.h"
#include "cameras/TypedCamera.h"
#include "shared/InputText.h"
#include "widgets/MessageQueue.h"

#include <QComboBox>
#include <QLineEdit>

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

void clean(QLineEdit* box, const QString& typed, bool keepHeaderMark)
{
    const QString text = cleanInput(typed, keepHeaderMark);
    if (text == typed)
        return;
    const auto caret = box->cursorPosition() + text.size() - typed.size();
    box->setText(text);
    box->setCursorPosition(static_cast<int>(std::clamp<qsizetype>(caret, 0, text.size())));
}

} // namespace

void cleanWhileTyping(QLineEdit* box, bool keepHeaderMark)
{
    QObject::connect(box, &QLineEdit::textEdited, box, [box, keepHeaderMark](const QString& typed) {
        clean(box, typed, keepHeaderMark);
    });
}

void cleanKeyWhileTyping(QLineEdit* url, QLineEdit* header)
{
    cleanWhileTyping(header);
    QObject::connect(url, &QLineEdit::textEdited, header, [url, header](const QString& typed) {
        if (typed.contains(HeaderMark)) {
            const auto [address, extraHeader] = splitCameraKey(typed);
            header->setText(cleanInput(extraHeader, false));
            url->setText(cleanInput(address, false));
            return;
        }
        clean(url, typed, false);
    });
}

void takeCategories(QComboBox* box)
{
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    // It would finish, and re-spell, the name of a new category.
    box->setCompleter(nullptr);
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setAccessibleName(QComboBox::tr("Category"));
    // A screen reader speaks of the field inside, which has the caret.
    box->lineEdit()->setAccessibleName(box->accessibleName());
    takeTextsOfAnyLength(box->lineEdit());
    cleanWhileTyping(box->lineEdit());
}

void takeTextsOfAnyLength(QLineEdit* box)
{
    box->setMaxLength(std::numeric_limits<int>::max());
}

QString enteredCategory(const QComboBox& box)
{
    const QString text = box.currentText();
    const bool offered = box.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive) >= 0;
    return offered ? text : text.trimmed();
}

std::optional<QString> takeCameraKey(const QString& typed, MessageQueue& messages)
{
    const auto key = cleanedCameraKey(typed);
    if (!key) {
        messages.tell({QMessageBox::Information, u"Pevora"_s,
                       QObject::tr("Only http:// and https:// addresses can be shown.")});
    }
    return key;
}
