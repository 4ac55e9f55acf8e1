#include "instance/FileInbox.h"

#include "shared/Timer.h"

using namespace Qt::Literals::StringLiterals;

namespace {

// Kept: not the test of the command line (see CommandLine.h). There ".pvm" alone is a movie.
CommandLineFile::Kind kindOf(const QString& name)
{
    if (name.isEmpty())
        return CommandLineFile::Kind::None;
    const bool isMovie = name.size() > 4 && name.right(4).toLower() == ".pvm"_L1;
    return isMovie ? CommandLineFile::Kind::Movie : CommandLineFile::Kind::CameraList;
}

} // namespace

FileInbox::FileInbox(QObject* parent)
    : QObject(parent)
    , m_tmrTurn(new Timer(u"tmrTurn"_s, 0, this))
{
    connect(m_tmrTurn, &Timer::Tick, this, [this] {
        m_tmrTurn->setEnabled(false);
        emit FileWaits();
    });
}

bool FileInbox::receive(const QString& name)
{
    if (m_closed || m_waiting.size() >= MaxWaiting)
        return false;
    m_waiting.append(name);
    emit Received(name);
    wake();
    return true;
}

void FileInbox::wake()
{
    m_tmrTurn->setEnabled(!m_waiting.isEmpty());
}

CommandLineFile FileInbox::takeNext()
{
    const QString name = m_waiting.isEmpty() ? QString() : m_waiting.takeFirst();
    wake();
    return {kindOf(name), name};
}

QStringList FileInbox::close()
{
    m_closed = true;
    QStringList lists;
    for (; !m_waiting.isEmpty(); m_waiting.removeFirst()) {
        if (kindOf(m_waiting.first()) == CommandLineFile::Kind::CameraList)
            lists.append(m_waiting.first());
    }
    wake();
    return lists;
}
