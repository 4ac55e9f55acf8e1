#include "viewer/history/Player.h"

#include "shared/JobQueue.h"
#include "viewer/history/History.h"
#include "viewer/surface/ToolBar.h"

#include <memory>
#include <utility>

Player::Player(const History& history, ToolBar& tbMain, JobQueue& queue, QObject* parent)
    : QObject(parent)
    , m_history(history)
    , m_tbMain(tbMain)
    , m_queue(queue)
{
}

void Player::start(float delay)
{
    m_state.StopPlay = false;
    m_state.PlayDelay = delay;
    Play();
}

void Player::Play()
{
    if (m_history.Count() == 0) {
        m_tbMain.setButtonsEnabled(true, {ToolBar::StopMovie});
        m_state.StopPlay = false;
        return;
    }
    m_tbMain.setButtonsEnabled(false, {ToolBar::StopMovie});
    if (m_run) {
        m_run->restart();
        return;
    }
    auto run = std::make_unique<PlayJob>(m_history, m_state);
    m_run = run.get();
    connect(m_run, &PlayJob::FrameDue, this, &Player::FrameDue);
    connect(m_run, &PlayJob::Finished, this, [this] { m_run = nullptr; });
    m_queue.enqueue(std::move(run));
}

void Player::stop()
{
    m_state.StopPlay = true;
    if (m_run && m_run->hasBegun())
        m_run->hurry();
    else if (m_run)
        withdraw();
}

/// One that waits for its turn would begin whatever has become of the history by then.
void Player::withdraw()
{
    m_queue.drop(m_run);
    m_run = nullptr;
    m_state.StopPlay = false;
}
