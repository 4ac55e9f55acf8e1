#include "support/TimeSeam.h"

Timer& timerOf(QObject& owner, const char* name)
{
    auto* timer = owner.findChild<Timer*>(QString::fromLatin1(name));
    if (!timer)
        qFatal("no timer of the name %s", name);
    return *timer;
}
