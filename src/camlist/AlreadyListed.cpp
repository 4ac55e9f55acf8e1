#include "camlist/AlreadyListed.h"

#include <QCheckBox>
#include <QMessageBox>

using namespace Qt::Literals::StringLiterals;

AlreadyListed::AlreadyListed(QWidget* owner)
    : QObject(owner)
    , m_owner(owner)
{
}

void AlreadyListed::tell(qsizetype cameras)
{
    if (cameras <= 0 || m_stopped)
        return;
    m_waiting.append(cameras);
    // Not at once: while the program starts, its window comes first.
    if (m_waiting.size() == 1)
        QMetaObject::invokeMethod(this, &AlreadyListed::showNext, Qt::QueuedConnection);
}

void AlreadyListed::stop()
{
    m_stopped = true;
    m_waiting.clear();
}

void AlreadyListed::showNext()
{
    if (m_stopped)
        return;
    auto* box =
        new QMessageBox(QMessageBox::Information, u"Pevora"_s, u"Cam is already in your list."_s,
                        QMessageBox::Ok, m_owner->window());
    box->setAttribute(Qt::WA_DeleteOnClose);
    auto* noMore = new QCheckBox(tr("Don't show again for this list"));
    box->setCheckBox(noMore);
    connect(box, &QMessageBox::finished, this, [this, noMore] { answered(noMore->isChecked()); });
    box->open();
}

void AlreadyListed::answered(bool noMoreOfThisList)
{
    if (m_stopped)
        return;
    if (noMoreOfThisList || --m_waiting.first() == 0)
        m_waiting.removeFirst();
    if (!m_waiting.isEmpty())
        showNext();
}
