#include "shell/SecondaryWindows.h"

#include "directory/DirectoryAddress.h"
#include "directory/Offers.h"
#include "directory/frmInt.h"
#include "shared/AppFolder.h"
#include "shared/BuildSettings.h"
#include "shell/frmWhat.h"
#include "widgets/FileDialog.h"
#include "widgets/MessageQueue.h"
#include "widgets/Topmost.h"

#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

SecondaryWindows::SecondaryWindows(QWidget* form, const QString& folder, int port)
    : QObject(form)
    , m_form(form)
    , m_folder(folder)
    , m_port(port)
    , m_messages(new MessageQueue(form))
    , m_offers(std::make_unique<Offers>(port, this))
{
    connect(m_offers.get(), &Offers::Failed, this, &SecondaryWindows::OfferFailed);
}

SecondaryWindows::~SecondaryWindows()
{
    shutDown();
}

void SecondaryWindows::showInternetList(bool topmost)
{
    if (!m_frmInt) {
        m_frmInt = new frmInt(m_folder, directory(), m_port);
        m_frmInt->setWindowIcon(m_form->windowIcon());
        connect(m_frmInt, &frmInt::Preview, this, &SecondaryWindows::Preview);
        connect(m_frmInt, &frmInt::Import, this, &SecondaryWindows::Import);
    }
    setListTopmost(topmost);
    m_frmInt->setWindowState(m_frmInt->windowState() & ~Qt::WindowMinimized);
    m_frmInt->show();
    m_frmInt->raise();
    m_frmInt->activateWindow();
}

void SecondaryWindows::setListTopmost(bool topmost)
{
    if (m_frmInt)
        setTopmost(*m_frmInt, topmost);
}

void SecondaryWindows::shutDown()
{
    // At once, with the query that runs: no event deletes it any more.
    const std::unique_ptr<frmInt> last(m_frmInt);
    m_offers.reset();
}

void SecondaryWindows::askForList()
{
    const QString lists = tr("Camera lists") + " (*.zip, list.dat, *.bak)(*.zip list.dat *.bak)"_L1;
    auto* dialog =
        new FileDialog(QFileDialog::AcceptOpen, {lists, u"All Files (*)(*)"_s}, {}, m_form);
    connect(dialog, &FileDialog::FileChosen, this, &SecondaryWindows::Import);
    dialog->open();
}

void SecondaryWindows::askForExport()
{
    const QString lists = tr("Camera lists") + " (*.zip)(*.zip)"_L1;
    auto* dialog =
        new FileDialog(QFileDialog::AcceptSave, {lists, u"All Files (*)(*)"_s}, {}, m_form);
    dialog->setDefaultSuffix(u"zip"_s);
    dialog->selectFile(u"cameras.zip"_s);
    connect(dialog, &FileDialog::FileChosen, this, &SecondaryWindows::exportTo);
    dialog->open();
}

/// The dialog has asked before a file is replaced, but it knows no name with another ending.
void SecondaryWindows::exportTo(const QString& path)
{
    constexpr auto ending = ".zip"_L1;
    if (path.endsWith(ending, Qt::CaseInsensitive)) {
        emit Export(path);
        return;
    }
    const QFileInfo file(path + ending);
    if (!file.isFile()) {
        emit Export(file.filePath());
        return;
    }
    m_messages->ask({QMessageBox::Warning, u"Export List"_s,
                     tr("%1 already exists.\nDo you want to replace it?").arg(file.fileName())},
                    [this, file] { emit Export(file.filePath()); });
}

void SecondaryWindows::showAbout(bool topmost)
{
    auto* what = new frmWhat(homePage(), m_form);
    setTopmost(*what, topmost);
    what->open();
}

void SecondaryWindows::submit(const EnteredCamera& camera)
{
    if (m_offers)
        m_offers->add(directory(), camera);
}

void SecondaryWindows::submitFailed()
{
    if (m_offers)
        m_offers->addFailed();
}

QString SecondaryWindows::directory() const
{
    return directoryAddress(pathInFolder(m_folder, u"pref.ini"_s));
}
