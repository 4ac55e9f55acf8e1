#include "directory/Offers.h"

#include "cameras/EnteredCamera.h"
#include "directory/SubmissionUrl.h"
#include "network/AnswerHead.h"

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int FirstRefusal = 300;
constexpr int FirstFault = 500;
constexpr qsizetype LongestReason = 80;

} // namespace

Offers::Offers(int port, QObject* parent)
    : QObject(parent)
    , m_HTTP1(this, port)
    , m_tmrTry(u"tmrTry"_s, TryMs, this)
    , m_tmrPause(u"tmrPause"_s, PauseMs, this)
{
    m_HTTP1.setObjectName(u"HTTP1"_s);
    connect(&m_HTTP1, &HTTP::Finished, this, &Offers::takeAnswer);
    connect(&m_HTTP1, &HTTP::Failed, this,
            [this](const QString& description) { tryFailed(description, true); });
    connect(&m_tmrTry, &Timer::Tick, this, [this] {
        m_HTTP1.Stop();
        tryFailed(tr("The server does not answer"), true);
    });
    connect(&m_tmrPause, &Timer::Tick, this, &Offers::beginTry);
}

void Offers::add(const QString& directory, const EnteredCamera& camera)
{
    const Offer offer{camera.name, submissionUrl(directory, camera)};
    if (directory.isEmpty()) {
        giveUp(offer, tr("No camera directory is set"));
        return;
    }
    m_waiting.append(offer);
    beginNext();
}

void Offers::addFailed()
{
    m_waiting += std::exchange(m_failed, {});
    beginNext();
}

void Offers::beginNext()
{
    if (m_tries == 0 && !m_waiting.isEmpty())
        beginTry();
}

void Offers::beginTry()
{
    ++m_tries;
    m_tmrPause.setEnabled(false);
    m_tmrTry.restart();
    m_HTTP1.Retrieve(m_waiting.first().url);
}

/// The status alone tells: what a page says to its reader does not matter here.
void Offers::takeAnswer(const QByteArray& answer)
{
    const AnswerHead head(answer);
    if (answer.isEmpty()) {
        tryFailed(tr("The server closed the connection without an answer"), true);
    } else if (head.code() >= FirstRefusal) {
        tryFailed(head.status().left(LongestReason), head.code() >= FirstFault);
    } else {
        m_tmrTry.setEnabled(false);
        m_waiting.removeFirst();
        m_tries = 0;
        beginNext();
    }
}

void Offers::tryFailed(const QString& reason, bool mayPass)
{
    m_tmrTry.setEnabled(false);
    if (mayPass && m_tries < MostTries) {
        m_tmrPause.restart();
        return;
    }
    m_tries = 0;
    giveUp(m_waiting.takeFirst(), reason);
    beginNext();
}

void Offers::giveUp(const Offer& offer, const QString& reason)
{
    m_failed.append(offer);
    QStringList names;
    for (const Offer& one : std::as_const(m_failed))
        names << one.name;
    emit Failed(names, reason);
}
