#include "cameras/CameraCategories.h"

using namespace Qt::Literals::StringLiterals;

const QStringList& cameraCategories()
{
    static const QStringList names = {u"Animals"_s,    u"Buildings"_s, u"Cities"_s,
                                      DefaultCategory, u"Interest"_s,  u"People"_s,
                                      u"Science"_s,    u"Sights"_s,    u"Traffic"_s};
    return names;
}
