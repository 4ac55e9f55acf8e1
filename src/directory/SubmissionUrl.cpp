#include "directory/SubmissionUrl.h"

#include "cameras/CameraKey.h"
#include "cameras/EnteredCamera.h"
#include "shared/InputText.h"

using namespace Qt::Literals::StringLiterals;

QString EscapeQueryValue(const QString& value)
{
    // In this order: the "+" of a blank stays, and no "%" is escaped again.
    QString escaped = value;
    return escaped.replace(u' ', u'+').replace(u'&', "%26"_L1).replace(u'=', "%3D"_L1);
}

QString submissionUrl(const QString& base, const EnteredCamera& camera)
{
    // A line break ends its own field, not the request with the fields behind it.
    const auto field = [](const QString& value) { return EscapeQueryValue(firstLineOf(value)); };
    QString url = base + "/pevora/?n="_L1 + field(camera.name) + "&a="_L1 + field(camera.url);
    if (!camera.extraHeader.isEmpty())
        url += HeaderMark;
    return url + field(camera.extraHeader) + "&c="_L1 + field(camera.category);
}
