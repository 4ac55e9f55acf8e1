#include "shell/OtherWindows.h"

#include "directory/DirectoryAddress.h"
#include "directory/Submission.h"
#include "directory/frmInt.h"
#include "shared/AppFolder.h"
#include "shared/Topmost.h"
#include "shared/WebPages.h"
#include "tray/frmWhat.h"
#include "viewer/FileDialog.h"

using namespace Qt::Literals::StringLiterals;

OtherWindows::OtherWindows(QWidget* form, const QString& folder, int port)
    : QObject(form)
    , m_form(form)
    , m_folder(folder)
    , m_port(port)
    , m_HTTP1(std::make_unique<HTTP>(this, port))
{
    m_HTTP1->setObjectName(u"HTTP1"_s);
}

OtherWindows::~OtherWindows()
{
    shutDown();
}

void OtherWindows::showInternetList(bool topmost)
{
    if (!m_frmInt) {
        m_frmInt = new frmInt(m_folder, directory(), m_port);
        m_frmInt->setWindowIcon(m_form->windowIcon());
        connect(m_frmInt, &frmInt::Preview, this, &OtherWindows::Preview);
        connect(m_frmInt, &frmInt::Import, this, &OtherWindows::Import);
    }
    setListTopmost(topmost);
    m_frmInt->setWindowState(m_frmInt->windowState() & ~Qt::WindowMinimized);
    m_frmInt->show();
    m_frmInt->raise();
    m_frmInt->activateWindow();
}

void OtherWindows::setListTopmost(bool topmost)
{
    if (m_frmInt)
        setTopmost(*m_frmInt, topmost);
}

void OtherWindows::shutDown()
{
    delete m_frmInt.data();
    m_HTTP1.reset();
}

void OtherWindows::askForList()
{
    auto* dialog = new FileDialog(QFileDialog::AcceptOpen,
                                  u"Zipped Cam Lists (*.zip)|*.zip|All Files (*)|*|"_s, {}, m_form);
    connect(dialog, &FileDialog::FileChosen, this, &OtherWindows::Import);
    dialog->open();
}

void OtherWindows::showAbout(bool topmost)
{
    auto* what = new frmWhat(homePage(), m_form);
    connect(what, &frmWhat::HomePageRequested, this, &OtherWindows::OpenWeb);
    setTopmost(*what, topmost);
    what->open();
}

void OtherWindows::submit(const Submission& camera)
{
    if (m_HTTP1)
        m_HTTP1->Retrieve(submissionUrl(directory(), camera));
}

QString OtherWindows::directory() const
{
    return directoryAddress(pathInFolder(m_folder, u"pref.ini"_s));
}
