#include "widgets/MessageQueue.h"

#include <QCheckBox>

#include <utility>

MessageQueue::MessageQueue(QWidget* owner)
    : QObject(owner)
    , m_owner(owner)
{
}

void MessageQueue::tell(const Message& message, qsizetype times)
{
    if (times > 0)
        add({message, times});
}

void MessageQueue::ask(const Message& question, std::function<void()> yes)
{
    add({question, 1, std::move(yes)});
}

void MessageQueue::end()
{
    m_ended = true;
    m_entries.clear();
}

void MessageQueue::add(Entry entry)
{
    if (m_ended)
        return;
    m_entries.append(std::move(entry));
    showNext();
}

void MessageQueue::showNext()
{
    if (m_open || m_entries.isEmpty())
        return;
    m_open = true;
    const auto& [message, times, yes] = m_entries.first();
    auto* box = new QMessageBox(message.icon, message.title, message.text,
                                yes ? QMessageBox::Yes | QMessageBox::No : QMessageBox::Ok,
                                m_owner->window());
    box->setObjectName(message.name);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    if (yes)
        box->setDefaultButton(QMessageBox::No);
    if (!message.skipRest.isEmpty())
        box->setCheckBox(new QCheckBox(message.skipRest));
    connect(box, &QMessageBox::finished, this, [this, box](int button) {
        answered(button, box->checkBox() && box->checkBox()->isChecked());
    });
    box->open();
}

void MessageQueue::answered(int button, bool skipRest)
{
    m_open = false;
    if (m_entries.isEmpty())
        return;
    Entry& entry = m_entries.first();
    const auto yes = button == QMessageBox::Yes ? entry.yes : nullptr;
    if (skipRest || --entry.times == 0)
        m_entries.removeFirst();
    if (yes)
        yes();
    showNext();
}
