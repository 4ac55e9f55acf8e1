#pragma once

#include "shared/Timer.h"

/// The timer of that name below `owner`; ends the program with a message where there is none,
/// because a test that moves no timer would wait in real time.
Timer& timerOf(QObject& owner, const char* name);
