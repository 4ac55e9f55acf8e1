#include "instance/FileInbox.h"

#include "shared/Timer.h"

#include <QSignalBlocker>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

// Kept: not the test of the command line (see CommandLine.h). There ".pvm" alone is a movie.
bool isMovie(const QString& text)
{
    return text.size() > 4 && text.right(4).toLower() == ".pvm"_L1;
}

} // namespace

FileInbox::FileInbox(Window window, QWidget* parent)
    : QLineEdit(parent)
    , m_window(std::move(window))
    // One file an event: in between, whoever hands the next one over is answered.
    , m_tmrTurn(new Timer(u"tmrTurn"_s, 0, this))
{
    setObjectName(u"txtCom"_s);
    setAccessibleName(tr("Files to open"));
    hide();
    connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_waiting.append(text);
        wake();
    });
    connect(m_tmrTurn, &Timer::Tick, this, &FileInbox::actOnNext);
}

bool FileInbox::receive(const QString& text)
{
    if (m_waiting.size() >= MaxWaiting)
        return false;
    {
        const QSignalBlocker silent(this);
        clear();
    }
    setText(text);
    return true;
}

void FileInbox::wake()
{
    m_tmrTurn->setEnabled(!m_waiting.isEmpty());
}

void FileInbox::openWaitingLists()
{
    m_tmrTurn->setEnabled(false);
    while (!m_waiting.isEmpty()) {
        const QString text = m_waiting.takeFirst();
        if (!text.isEmpty() && !isMovie(text))
            m_window.openList(text);
    }
}

void FileInbox::actOnNext()
{
    if (m_waiting.isEmpty() || m_window.isBusy())
        return m_tmrTurn->setEnabled(false);
    const QString text = m_waiting.takeFirst();
    if (text.isEmpty())
        return;
    if (isMovie(text))
        m_window.openMovie(text);
    else
        m_window.openList(text);
}
