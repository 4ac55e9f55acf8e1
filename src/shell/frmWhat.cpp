#include "shell/frmWhat.h"

#include "shared/BuildSettings.h"
#include "widgets/LinkLabel.h"
#include "widgets/MessageQueue.h"
#include "widgets/OpenOrTell.h"
#include "widgets/SymbolIcon.h"

#include <QDialogButtonBox>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int LogoPx = 96;
constexpr QSize AboutSize(440, 360);

/// The program's picture, as sharp as the screen it is on.
class Logo : public QWidget
{
public:
    explicit Logo(QWidget* parent)
        : QWidget(parent)
        , m_icon(symbolIcon(u"pevora"_s))
    {
        setFixedSize(LogoPx, LogoPx);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        m_icon.paint(&painter, rect());
    }

private:
    QIcon m_icon;
};

QString releaseNotes()
{
    return "Pevora v"_L1 + programVersion() + " ("_L1 + releaseMonth() +
           u")\n"
           "\n"
           "- Favorites: cameras that are one menu away, and a window to manage them\n"
           "- Goto bar: type a camera's name or address and press Enter\n"
           "- Language packs: a lan.ini replaces the captions\n"
           "- About and Help menus\n"
           "- Cameras can be added from a web browser: a list that it opens is imported\n"
           "- Desktop image: the picture on show becomes the desktop background\n"
           "- Tray option: Pevora hides in the system tray\n"
           "- Original size: pictures as they are, pixel for pixel\n"
           "- Preferences are saved\n"
           "- New Images Only is more efficient\n"
           "- The address on show is the one that the picture came from\n"
           "- History: an image that is deleted no longer leaves its thumbnail\n"
           "- History: stepping back no longer stops at the oldest image but one\n"
           "\n"
           "Pevora v1.0: the first release\n"_s;
}

} // namespace

frmWhat::frmWhat(const QString& homePage, QWidget* parent)
    : QDialog(parent)
    , m_tabMain(new QTabWidget(this))
    , m_messages(new MessageQueue(this))
{
    setObjectName(u"frmWhat"_s);
    setWindowTitle(u"About"_s);
    setAttribute(Qt::WA_DeleteOnClose);

    m_tabMain->setObjectName(u"tabMain"_s);
    m_tabMain->addTab(createAbout(homePage), u"About"_s);
    m_tabMain->addTab(createNews(), u"What's New"_s);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &frmWhat::reject);

    auto* all = new QVBoxLayout(this);
    all->addWidget(m_tabMain);
    all->addWidget(buttons);
    resize(AboutSize);
}

QWidget* frmWhat::createAbout(const QString& homePage)
{
    auto* page = new QFrame(this);
    page->setObjectName(u"frBack(0)"_s);
    auto* logo = new Logo(page);
    logo->setObjectName(u"imgMain"_s);
    logo->setAccessibleName(tr("Pevora's logo"));

    auto* name = new QLabel("Pevora v"_L1 + programVersion(), page);
    QFont large = name->font();
    large.setPointSizeF(large.pointSizeF() * 1.5);
    large.setBold(true);
    name->setFont(large);
    auto* notice = new QLabel(
        u"Free software under the MIT licence: use it, share it, change it, without any warranty."_s,
        page);
    notice->setWordWrap(true);
    notice->setAlignment(Qt::AlignCenter);
    auto* authors = new QLabel(u"By the Pevora authors"_s, page);
    auto* home = new LinkLabel(homePage, page);
    connect(home, &LinkLabel::Clicked, this,
            [this, homePage] { openOrTell(homePage, *m_messages); });

    auto* column = new QVBoxLayout(page);
    column->addStretch();
    column->addWidget(logo, 0, Qt::AlignHCenter);
    int number = 0;
    for (QLabel* label : {name, notice, authors, static_cast<QLabel*>(home)}) {
        label->setObjectName(u"lbl(%1)"_s.arg(number++));
        label->setTextFormat(Qt::PlainText);
        if (label == notice)
            column->addWidget(label);
        else
            column->addWidget(label, 0, Qt::AlignHCenter);
    }
    column->addStretch();
    return page;
}

QWidget* frmWhat::createNews()
{
    auto* page = new QFrame(this);
    page->setObjectName(u"frBack(1)"_s);
    auto* text = new QPlainTextEdit(releaseNotes(), page);
    text->setObjectName(u"txtMain"_s);
    text->setAccessibleName(tr("Release notes"));
    text->setReadOnly(true);
    auto* column = new QVBoxLayout(page);
    column->addWidget(text);
    return page;
}
