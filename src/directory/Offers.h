#pragma once

#include "network/HTTP.h"
#include "shared/Timer.h"

#include <QList>
#include <QObject>
#include <QStringList>

struct EnteredCamera;

/// Offers cameras to the directory, one at a time, in the order of asking. A try that fails for a
/// reason that may pass (no connection, a reset, silence, an empty answer, a status of 5xx) is made
/// anew after a pause, three times in all, and the others wait for that; one that the directory
/// refuses (3xx, 4xx) is not. Any other answer means that it has the camera. What has not gone out
/// when this ends is dropped: nothing of it is kept for the next start.
class Offers : public QObject
{
    Q_OBJECT

public:
    static constexpr int MostTries = 3;
    static constexpr int PauseMs = 20'000;
    /// A try that is not over by then has failed.
    static constexpr int TryMs = 60'000;

    /// Other ports than the default are for tests.
    explicit Offers(int port = HTTP::DefaultPort, QObject* parent = nullptr);

    /// Offers `camera` to the directory at `directory`, an address as directoryAddress() gives it.
    /// Where that is empty, the offer fails before this returns.
    void add(const QString& directory, const EnteredCamera& camera);

    /// Offers all that have failed anew, behind those that wait.
    void addFailed();

signals:
    /// An offer has failed for good. `names` are the cameras that have failed and were not offered
    /// anew, this one last; `reason` is why it did, one line without a full stop.
    void Failed(const QStringList& names, const QString& reason);

private:
    struct Offer
    {
        QString name;
        QString url;
    };

    void beginNext();
    void beginTry();
    void takeAnswer(const QByteArray& answer);
    void tryFailed(const QString& reason, bool mayPass);
    void giveUp(const Offer& offer, const QString& reason);

    HTTP m_HTTP1;
    Timer m_tmrTry;
    Timer m_tmrPause;
    /// The first is the one whose turn it is, if m_tries is not 0.
    QList<Offer> m_waiting;
    QList<Offer> m_failed;
    /// Tries of the first that waits, begun so far.
    int m_tries = 0;
};
