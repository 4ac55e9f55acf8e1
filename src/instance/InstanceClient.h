#pragma once

#include <QString>

class InstanceLock;

/// What became of a file that a starting instance wanted another one to open.
enum class HandOver {
    Delivered,    ///< a running instance has it
    Unanswered,   ///< another instance runs, but it did not take the file in time
    NobodyServes, ///< this instance is the first; it holds the place, where there is one
};

/// How long a starting instance tries, in milliseconds.
constexpr int HandOverPatienceMs = 5'000;

/// Gives `name`, a file name without quotes, to the instance that runs, if there is one. Blocks up
/// to `patienceMs`: nothing of the starting instance is on screen, and nothing is reported. So
/// there is no window yet, either, that would have to go by another caption than "Pevora" lest it
/// be taken for the one that runs. The instance that was not the first ends, delivered or not.
/// Needs a QCoreApplication.
HandOver handOver(InstanceLock& place, const QString& name, int patienceMs = HandOverPatienceMs);

/// `name` as another instance, in another working folder, has to be told of it: absolute. Empty
/// stays empty, and ".pvm" stays as it is.
QString nameForOtherInstance(const QString& name);
