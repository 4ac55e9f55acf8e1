#pragma once

#include <QSignalSpy>
#include <QTest>
#include <QWidget>

/// The longest that a test waits for what has to happen, in milliseconds. It stands against a test
/// that hangs and nothing else: a test that passes never waits so long, however busy the machine.
inline constexpr int HangMs = 60'000;

// Qt Test's own macros give up after five seconds.
#undef QTRY_VERIFY
#undef QTRY_VERIFY2
#undef QTRY_COMPARE
#define QTRY_VERIFY(expression) QTRY_VERIFY_WITH_TIMEOUT((expression), HangMs)
#define QTRY_VERIFY2(expression, message) QTRY_VERIFY2_WITH_TIMEOUT((expression), message, HangMs)
#define QTRY_COMPARE(actual, expected) QTRY_COMPARE_WITH_TIMEOUT((actual), (expected), HangMs)

/// Lets events pass until `predicate` holds. False where it does not within HangMs.
template<typename Predicate>
[[nodiscard]] bool waitFor(Predicate predicate)
{
    return QTest::qWaitFor(predicate, HangMs);
}

/// Until `window` is on the screen. As above.
[[nodiscard]] inline bool waitForExposed(QWidget* window)
{
    return QTest::qWaitForWindowExposed(window, HangMs);
}

/// Until `window` has the keyboard. As above.
[[nodiscard]] inline bool waitForActive(QWidget* window)
{
    return QTest::qWaitForWindowActive(window, HangMs);
}

/// Until `spy` has heard one more signal than now. As above.
[[nodiscard]] inline bool waitForSignal(QSignalSpy& spy)
{
    return spy.wait(HangMs);
}
