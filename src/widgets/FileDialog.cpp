#include "widgets/FileDialog.h"

#include "widgets/MessageQueue.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

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
            emit FileChosen(path);
    });
}

void FileDialog::accept()
{
    // Without widgets of ours it is the desktop's own dialog, which has asked already.
    const bool desktops = testAttribute(Qt::WA_DontShowOnScreen);
    if (!desktops && acceptMode() == AcceptSave && askBeforeReplacing(selectedFiles().value(0)))
        return;
    QFileDialog::accept();
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
