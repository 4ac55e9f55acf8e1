#pragma once

class QWidget;

/// Shows `window`, runs the event loop and closes it. Gives the code with which the program then
/// ends, or StillRuns where it goes on.
int codeAfterClosing(QWidget& window);
inline constexpr int StillRuns = 7;
