#include "shared/InputText.h"

using namespace Qt::Literals::StringLiterals;

QString withoutSeparator(const QString& text)
{
    QString result = text;
    return result.replace(u'\u00FF', u"y\u0308"_s);
}

QString cleanInput(const QString& typed, bool keepHeaderMark)
{
    QString result = withoutSeparator(typed);
    return result.removeIf([keepHeaderMark](QChar character) {
        return character.category() == QChar::Other_Control &&
               !(keepHeaderMark && character == u'\u0001');
    });
}
