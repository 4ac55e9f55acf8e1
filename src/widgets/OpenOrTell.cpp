#include "widgets/OpenOrTell.h"

#include "widgets/MessageQueue.h"
#include "widgets/OpenAddress.h"

#include <QCoreApplication>
#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace {

void tellUnless(bool opened, const QString& address, MessageQueue& messages)
{
    // An address from a list may be as long as the list.
    constexpr qsizetype LongestShown = 500;
    if (opened)
        return;
    QString shown = address.left(LongestShown);
    if (shown.size() < address.size())
        shown += u'…';
    messages.tell(
        {QMessageBox::Information, u"Pevora"_s,
         QCoreApplication::translate("OpenOrTell", "No browser opened this page: %1").arg(shown)});
}

} // namespace

void openOrTell(const QString& address, MessageQueue& messages)
{
    tellUnless(openAddress(address), address, messages);
}

void openHelpOrTell(const QString& site, const QString& path, MessageQueue& messages)
{
    if (site.isEmpty())
        tellUnless(openHelpPage(path), QDir::toNativeSeparators(path), messages);
    else
        openOrTell(site, messages);
}
