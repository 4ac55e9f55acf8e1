#pragma once

#include <QString>

class InstanceLock;

/// The starting instance's side of a hand-over: it asks the server, the instance that runs, to
/// open a file. Needs a QCoreApplication.
class InstanceClient
{
public:
    /// What became of the file.
    enum class Result {
        Delivered,  ///< the server has it
        Unanswered, ///< another instance runs, but it did not take the file in time
        NoServer,   ///< this instance is the first; it holds the lock, where there is one
    };

    /// How long a starting instance tries, in milliseconds.
    static constexpr int PatienceMs = 5'000;

    /// `lock` has to live as long.
    explicit InstanceClient(InstanceLock& lock);

    /// Gives `name`, a file name without quotes, to the server, if there is one. Blocks up to
    /// `patienceMs`: nothing of the starting instance is on screen, and nothing is reported. As
    /// there is no window yet, none can be mistaken for that of the server, and its caption need
    /// not differ from "Pevora". An instance that gets another result than NoServer ends.
    Result handOver(const QString& name, int patienceMs = PatienceMs);

    /// `name` as another instance, in another working folder, has to be told of it: absolute.
    /// Empty stays empty, and ".pvm", in whatever letter case, stays as it is.
    static QString nameForServer(const QString& name);

private:
    InstanceLock& m_lock;
};
