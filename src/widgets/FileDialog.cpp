#include "widgets/FileDialog.h"

#include "widgets/MessageQueue.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

namespace {

/// ".jpg" of a name filter whose pattern is "*.jpg".
QString endingOf(const QString& filter)
{
    return filter.section(u'*', -1).section(u')', 0, 0);
}

} // namespace

FileDialog::FileDialog(AcceptMode mode, const QStringList& filters, const QString& folder,
                       QWidget* window)
    : QFileDialog(window, {}, folder)
    , m_messages(new MessageQueue(this))
{
    setObjectName(u"cd"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setAcceptMode(mode);
    setFileMode(AnyFile);
    setOption(HideNameFilterDetails);
    // While a file to open is looked for none is renamed or deleted.
    setOption(ReadOnly, mode == AcceptOpen);
    setNameFilters(filters);
    connect(this, &QDialog::accepted, this, [this] {
        const QString path = selectedFiles().value(0);
        if (!path.isEmpty())
            emit FileChosen(acceptMode() == AcceptSave ? withEnding(path) : path);
    });
}

void FileDialog::accept()
{
    const QString name = selectedFiles().value(0);
    if (acceptMode() == AcceptOpen || name.isEmpty() || QFileInfo(name).isDir()) {
        QFileDialog::accept(); // which enters a folder
        return;
    }
    const QString path = withEnding(name);
    // Without widgets of ours it is the desktop's own dialog, which has asked about `name`.
    if (!testAttribute(Qt::WA_DontShowOnScreen)) {
        if (askBeforeReplacing(path))
            return;
    } else if (path != name && QFileInfo::exists(path)) {
        showAgain(path);
        return;
    }
    setOption(DontConfirmOverwrite);
    QFileDialog::accept();
}

/// Of `path`, a file to save.
QString FileDialog::withEnding(const QString& path) const
{
    for (const QString& filter : nameFilters()) {
        if (path.endsWith(endingOf(filter), Qt::CaseInsensitive))
            return path;
    }
    return path + endingOf(selectedNameFilter());
}

/// The desktop's dialog, which has closed, with a name that it has not asked about.
void FileDialog::showAgain(const QString& path)
{
    QMetaObject::invokeMethod(
        this,
        [this, path] {
            selectFile(path);
            open();
        },
        Qt::QueuedConnection);
}

/// Whether `path` is a file and the question is asked; "Yes" then goes on.
bool FileDialog::askBeforeReplacing(const QString& path)
{
    const QFileInfo file(path);
    if (!file.exists() || file.isDir())
        return false;
    m_messages->ask(
        {QMessageBox::Warning,
         windowTitle(),
         QFileDialog::tr("%1 already exists.\nDo you want to replace it?").arg(file.fileName()),
         {},
         u"replace"_s},
        [this] {
            setOption(DontConfirmOverwrite);
            QFileDialog::accept();
        });
    return true;
}
