#include "platform/TerminationSignal.h"

// A program with windows and no console is asked to end by messages to its windows, which Qt
// turns into close events and QGuiApplication::commitDataRequest.
struct TerminationSignal::Handlers
{
};

TerminationSignal::TerminationSignal(QObject* parent)
    : QObject(parent)
{
}

TerminationSignal::~TerminationSignal() = default;
