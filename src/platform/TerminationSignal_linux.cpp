#include "platform/TerminationSignal.h"

#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr std::array HandledSignals{SIGTERM, SIGINT, SIGHUP};

// The end of the socket pair into which the handler writes; -1 while none is there. A handler is
// given nothing but the number of its signal, so this must be reachable from anywhere.
std::atomic<int> handlerSocket{-1};
static_assert(std::atomic<int>::is_always_lock_free);

// Runs between any two instructions of the program: only async-signal-safe calls. A full socket
// loses nothing, since what is in it wakes the event loop anyway.
void handleSignal(int)
{
    const int savedErrno = errno;
    const char byte = 1;
    const int descriptor = handlerSocket.load();
    if (descriptor >= 0)
        std::ignore = send(descriptor, &byte, 1, MSG_NOSIGNAL);
    errno = savedErrno;
}

} // namespace

struct TerminationSignal::Handlers
{
    ~Handlers()
    {
        for (const auto& [number, action] : former)
            sigaction(number, &action, nullptr);
        notifier.reset();
        if (sockets[0] >= 0) {
            handlerSocket.store(-1);
            close(sockets[0]);
            close(sockets[1]);
        }
    }

    std::array<int, 2> sockets{-1, -1};
    std::unique_ptr<QSocketNotifier> notifier;
    std::vector<std::pair<int, struct sigaction>> former;
};

TerminationSignal::TerminationSignal(QObject* parent)
    : QObject(parent)
    , m_handlers(std::make_unique<Handlers>())
{
    Q_ASSERT(handlerSocket.load() < 0);
    // Without sockets the signals keep ending the program at once.
    auto& sockets = m_handlers->sockets;
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, sockets.data()) != 0)
        return;
    handlerSocket.store(sockets[0]);

    m_handlers->notifier = std::make_unique<QSocketNotifier>(sockets[1], QSocketNotifier::Read);
    connect(m_handlers->notifier.get(), &QSocketNotifier::activated, this, [this] {
        std::array<char, 64> bytes{};
        while (read(m_handlers->sockets[1], bytes.data(), bytes.size()) > 0) {
        }
        // Last: whoever hears it may end this object.
        emit Received();
    });

    struct sigaction action = {};
    action.sa_handler = handleSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int number : HandledSignals) {
        struct sigaction old = {};
        if (sigaction(number, nullptr, &old) != 0 ||
            (!(old.sa_flags & SA_SIGINFO) && old.sa_handler == SIG_IGN))
            continue;
        if (sigaction(number, &action, nullptr) == 0)
            m_handlers->former.emplace_back(number, old);
    }
}

TerminationSignal::~TerminationSignal() = default;
