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

QString firstLineOf(const QString& text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'\r' || text[i] == u'\n')
            return text.left(i);
    }
    return text;
}
