#include "directory/frmInt.h"

#include "cameras/CameraCategories.h"
#include "cameras/CameraKey.h"
#include "cameras/CameraTexts.h"
#include "directory/DirectoryAnswer.h"
#include "directory/FoundCamerasModel.h"
#include "shared/AppFolder.h"
#include "shared/InputText.h"
#include "shared/ReplaceFile.h"
#include "widgets/CheckedListView.h"
#include "widgets/ElidedLabel.h"
#include "widgets/MessageQueue.h"
#include "widgets/Twips.h"

#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QResizeEvent>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr QSize InternetListSize(560, 420);
constexpr QSize SmallestFoundCameras(240, 160);
constexpr int PromptWidth = 360;
constexpr int LongestHost = 60;
constexpr int FirstColumnTwips = 2000;
/// What the columns leave of the list's width to the frame and the scroll bar.
constexpr int BesideColumnsTwips = 500;

constexpr auto ScriptPath = "/pevora/index.cgi?"_L1;

QPushButton* listButton(const QString& name, const QString& caption, QWidget* parent)
{
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(name);
    // A click leaves the keyboard in the list, so that Enter stays "Preview".
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

frmInt::frmInt(const QString& folder, const QString& directory, int port, QWidget* parent)
    : QDialog(parent, Qt::Window)
    , m_folder(folder)
    , m_directory(directory)
    , m_HTTP1(this, port)
    , m_tmrSilent(u"tmrSilent"_s, SilenceMs, this)
    , m_found(new FoundCamerasModel(this))
    , m_messages(new MessageQueue(this))
{
    setObjectName(u"frmInt"_s);
    setWindowTitle(u"Internet List"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    m_HTTP1.setObjectName(u"HTTP1"_s);
    connect(&m_HTTP1, &HTTP::Finished, this, &frmInt::showAnswer);
    connect(&m_HTTP1, &HTTP::Status, this, &frmInt::tellState);
    connect(&m_HTTP1, &HTTP::Failed, this, [this] {
        if (!m_heard)
            tellNoDirectory();
        queryEnded();
    });
    connect(&m_HTTP1, &HTTP::Connected, &m_tmrSilent, &Timer::restart);
    connect(&m_HTTP1, &HTTP::DataArrival, this, [this] {
        m_heard = true;
        m_tmrSilent.setEnabled(false);
    });
    connect(&m_tmrSilent, &Timer::Tick, this, [this] {
        m_HTTP1.Stop();
        tellState(u"Error: "_s + tr("The server does not answer."));
        tellNoDirectory();
        queryEnded();
    });
    createList();
    createButtons();
    createStatusLine();
    layOut(createMenu());
    resize(InternetListSize);
    m_lvwList->setFocus();
    if (m_directory.isEmpty())
        tellNoDirectory();
}

void frmInt::createList()
{
    m_lvwList = new CheckedListView(m_found, tr("Cameras"), this);
    m_lvwList->setMinimumSize(SmallestFoundCameras);
    m_lvwList->setAllColumnsShowFocus(true);
    m_lvwList->installEventFilter(this);
}

void frmInt::createButtons()
{
    m_cmdAll = listButton(u"cmdAll"_s, u"Select All"_s, this);
    m_cmdNone = listButton(u"cmdNone"_s, u"De-Select All"_s, this);
    m_cmdPre = listButton(u"cmdPre"_s, u"Preview"_s, this);
    m_cmdAdd = listButton(u"cmdAdd"_s, u"Add Selected"_s, this);
    m_cmdPre->setDefault(true);
    connect(m_cmdAll, &QPushButton::clicked, this, [this] { m_found->checkAll(true); });
    connect(m_cmdNone, &QPushButton::clicked, this, [this] { m_found->checkAll(false); });
    connect(m_cmdPre, &QPushButton::clicked, this, &frmInt::preview);
    connect(m_cmdAdd, &QPushButton::clicked, this, &frmInt::addSelected);
}

void frmInt::createStatusLine()
{
    m_lblStatus = new ElidedLabel(this);
    m_lblStatus->setObjectName(u"lblStatus"_s);
    m_lblStatus->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_lblHint = new QLabel(this);
    m_lblHint->setObjectName(u"lblHint"_s);
    m_lblHint->setTextFormat(Qt::PlainText);
    m_lblHint->setWordWrap(true);
    m_lblHint->hide();
    m_cmdStop = listButton(u"cmdStop"_s, tr("Stop"), this);
    m_cmdStop->setEnabled(false);
    connect(m_cmdStop, &QPushButton::clicked, this, &frmInt::stop);
}

QMenu* frmInt::createMenu()
{
    auto* options = new QMenu(u"&Options"_s, this);
    options->setObjectName(u"mnuOpt"_s);
    auto* search = addEntry(options, u"mnuOptSearch"_s, u"Search"_s);
    auto* newest = addEntry(options, u"mnuOptNew"_s, u"Newest"_s);
    options->addSeparator();
    auto* categories = options->addMenu(u"Categories"_s);
    categories->setObjectName(u"mnuOptDown"_s);
    for (const QString& category : cameraCategories()) {
        const QString name = u"mnuOptDownIt(%1)"_s.arg(categories->actions().size());
        auto* entry = addEntry(categories, name, category);
        connect(entry, &QAction::triggered, this, [this, category] { searchCategory(category); });
    }
    options->addSeparator();
    auto* close = addEntry(options, u"mnuOptClose"_s, u"Close"_s);

    connect(search, &QAction::triggered, this, &frmInt::askForTerms);
    connect(newest, &QAction::triggered, this, &frmInt::searchNewest);
    connect(close, &QAction::triggered, this, &QWidget::close);
    m_queries = categories->actions() << search << newest << categories->menuAction();
    return options;
}

QAction* frmInt::addEntry(QMenu* menu, const QString& name, const QString& caption)
{
    auto* entry = menu->addAction(caption);
    entry->setObjectName(name);
    return entry;
}

void frmInt::layOut(QMenu* options)
{
    auto* bar = new QMenuBar(this);
    bar->addMenu(options);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdAll);
    buttons->addWidget(m_cmdNone);
    buttons->addStretch();
    buttons->addWidget(m_cmdPre);
    buttons->addWidget(m_cmdAdd);
    auto* all = new QVBoxLayout(this);
    all->setMenuBar(bar);
    auto* status = new QHBoxLayout;
    status->addWidget(m_lblStatus, 1);
    status->addWidget(m_cmdStop);
    all->addWidget(m_lvwList, 1);
    all->addLayout(status);
    all->addWidget(m_lblHint);
    all->addLayout(buttons);

    QWidget* before = m_lvwList;
    for (auto* one : {m_cmdStop, m_cmdAll, m_cmdNone, m_cmdPre, m_cmdAdd}) {
        setTabOrder(before, one);
        before = one;
    }
}

void frmInt::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (std::exchange(m_columnsSet, true))
        return;
    layout()->activate();
    const int first = pixelsFromTwips(FirstColumnTwips);
    m_lvwList->setColumnWidth(FoundCamerasModel::CategoryColumn, first);
    m_lvwList->setColumnWidth(FoundCamerasModel::NameColumn,
                              m_lvwList->width() - first - pixelsFromTwips(BesideColumnsTwips));
}

void frmInt::searchCategory(const QString& category)
{
    query("cat="_L1 + category, true);
}

void frmInt::searchNewest()
{
    query(u"new=1"_s, false);
}

void frmInt::askForTerms()
{
    auto* dialog = new QInputDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(u"Search"_s);
    dialog->setLabelText(u"Enter search terms below."_s);
    dialog->resize(PromptWidth, dialog->sizeHint().height());
    connect(dialog, &QInputDialog::textValueSelected, this, [this](const QString& typed) {
        // Not while it is typed: the dialog takes its text from before the box is cleaned.
        const QString terms = cleanInput(typed, false);
        if (!terms.isEmpty())
            query("q="_L1 + terms, true);
    });
    dialog->open();
}

/// Kept: nothing in `queryString` is escaped.
void frmInt::query(const QString& queryString, bool sorted)
{
    m_found->setSorted(sorted);
    m_heard = false;
    m_lblHint->hide();
    setQueriesEnabled(false);
    m_HTTP1.Retrieve(m_directory + ScriptPath + queryString);
}

void frmInt::stop()
{
    m_HTTP1.Stop();
    tellState(tr("Stopped"));
    queryEnded();
}

void frmInt::showAnswer(const QByteArray& bytes)
{
    queryEnded();
    const DirectoryAnswer answer(bytes);
    if (const auto& fault = answer.fault()) {
        tellState(u"Error: "_s + reasonOf(*fault));
        if (fault->kind != DirectoryFault::Kind::Incomplete)
            tellNoDirectory();
        return;
    }
    const auto cameras = answer.cameras();
    m_found->replaceAll(cameras.value_or(QList<CameraRecord>()));
    m_lvwList->setCurrentIndex(m_found->index(0, 0));
    // Kept: one camera is "1 Cams" too.
    tellState(cameras ? u"Finished [Found %1 Cams]"_s.arg(m_found->rowCount())
                      : u"Finished [No Cams Found]"_s);
}

/// `text` may be the server's own.
void frmInt::tellState(const QString& text)
{
    const QString line = shownLine(text);
    setWindowTitle(line);
    m_lblStatus->ShowStatusText(line);
}

void frmInt::tellNoDirectory()
{
    const QString host = shownLine(withoutHttpScheme(m_directory)).left(LongestHost);
    m_lblHint->setText(
        host.isEmpty()
            ? tr("No camera directory is set: name one in pref.ini, as HOST in the section "
                 "[DIRECTORY].")
            : tr("No camera directory answers at %1: another one can be named in pref.ini, as "
                 "HOST in the section [DIRECTORY].")
                  .arg(host));
    m_lblHint->show();
}

void frmInt::queryEnded()
{
    m_tmrSilent.setEnabled(false);
    setQueriesEnabled(true);
}

QString frmInt::reasonOf(const DirectoryFault& fault)
{
    switch (fault.kind) {
    case DirectoryFault::Kind::OtherStatus:
        break;
    case DirectoryFault::Kind::Incomplete:
        return tr("The answer is incomplete.");
    case DirectoryFault::Kind::Nothing:
        return tr("The server closed the connection without an answer.");
    }
    return fault.status;
}

/// While a query runs it can be stopped; nothing starts another or works on rows that are about to
/// go. What is there can be looked at, and the window can be closed.
void frmInt::setQueriesEnabled(bool on)
{
    for (auto* entry : std::as_const(m_queries))
        entry->setEnabled(on);
    for (auto* button : {m_cmdAll, m_cmdNone, m_cmdAdd}) {
        // Else the keyboard would go on to the next button, and Enter with it.
        if (!on && button->hasFocus())
            m_lvwList->setFocus();
        button->setEnabled(on);
    }
    if (on && m_cmdStop->hasFocus())
        m_lvwList->setFocus();
    m_cmdStop->setEnabled(!on);
}

void frmInt::preview()
{
    const QModelIndexList selected = m_lvwList->selectionModel()->selectedRows();
    if (!selected.isEmpty())
        emit Preview(selected.first().data(FoundCamerasModel::KeyRole).toString());
}

void frmInt::addSelected()
{
    const QList<CameraRecord> cameras = m_found->checkedCameras();
    if (cameras.isEmpty()) {
        m_messages->tell({QMessageBox::Information, u"Pevora"_s, u"No Cams Selected."_s});
        return;
    }
    const QString path = pathInFolder(m_folder, u"icl.zip"_s);
    if (!replaceFile(path, "CAMZ" + writeCameraListLine(cameras) + "\r\n")) {
        tellState(u"Error: Not saved."_s);
        return;
    }
    const QPointer<frmInt> self(this);
    emit Import(path);
    QFile::remove(path);
    if (self)
        close();
}

bool frmInt::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_lvwList && event->type() == QEvent::Resize && m_columnsSet)
        growNameColumn(static_cast<QResizeEvent*>(event));
    return QDialog::eventFilter(watched, event);
}

/// Names have what the list gains, from whatever width the user gave them.
void frmInt::growNameColumn(const QResizeEvent* event)
{
    const int gain = event->size().width() - event->oldSize().width();
    m_lvwList->setColumnWidth(FoundCamerasModel::NameColumn,
                              m_lvwList->columnWidth(FoundCamerasModel::NameColumn) + gain);
}
