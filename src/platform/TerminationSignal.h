#pragma once

#include <QObject>

#include <memory>

/// Tells the event loop that the system asks the program to end: SIGTERM, SIGINT or SIGHUP on
/// Linux. On Windows the system asks through the windows themselves, and Received is never
/// emitted.
///
/// While it lives the program does not end by these signals of itself; whoever owns the object
/// ends it. A signal that was ignored when the object was made (as under nohup) stays ignored.
/// Signals that arrive before the event loop has run again may be reported as one. The former
/// behaviour returns when the object goes. Only one object at a time, in the main thread.
class TerminationSignal : public QObject
{
    Q_OBJECT
public:
    explicit TerminationSignal(QObject* parent = nullptr);
    ~TerminationSignal() override;

signals:
    void Received();

private:
    struct Handlers;
    std::unique_ptr<Handlers> m_handlers;
};
