#include "shell/parts/AddPanel.h"

#include "cameras/CameraCategories.h"
#include "cameras/CameraKey.h"
#include "cameras/EnteredCamera.h"
#include "widgets/InputBoxes.h"
#include "widgets/LinkLabel.h"
#include "widgets/MessageQueue.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

AddPanel::AddPanel(QWidget* parent)
    : QScrollArea(parent)
    , m_messages(new MessageQueue(this))
    , m_cmbCat(new QComboBox)
    , m_txtName(new QLineEdit)
    , m_txtUrl(new QLineEdit)
    , m_txtHead(new QLineEdit)
    , m_chkAdd(new QCheckBox(u"Add to internet database."_s))
    , m_cmdAdd(new QPushButton(u"Add It"_s))
{
    setObjectName(u"picAdd"_s);
    auto* help = new LinkLabel(u"Extra Header: (ie. Cookie)"_s, nullptr);
    m_lbl = {new QLabel(u"Category:"_s), new QLabel(u"Url: (*.bmp,*.gif,*.jpg)"_s),
             new QLabel(u"Name:"_s), help};
    for (std::size_t i = 0; i < m_lbl.size(); ++i)
        m_lbl[i]->setObjectName(u"lbl(%1)"_s.arg(i));

    takeCategories(m_cmbCat);
    m_txtName->setAccessibleName(tr("Name"));
    m_txtUrl->setAccessibleName(tr("Address"));
    m_txtHead->setAccessibleName(tr("Extra header"));
    m_cmbCat->setObjectName(u"cmbCat"_s);
    m_txtName->setObjectName(u"txtName"_s);
    m_txtUrl->setObjectName(u"txtUrl"_s);
    m_txtHead->setObjectName(u"txtHead"_s);
    m_chkAdd->setObjectName(u"chkAdd"_s);
    m_cmdAdd->setObjectName(u"cmdAdd"_s);
    for (auto* box : {m_cmbCat->lineEdit(), m_txtName, m_txtUrl, m_txtHead}) {
        takeTextsOfAnyLength(box);
        connect(box, &QLineEdit::returnPressed, this, &AddPanel::enterPressed);
    }
    cleanWhileTyping(m_txtName);
    cleanKeyWhileTyping(m_txtUrl, m_txtHead);

    // A camera that needs a header of its own is nobody else's; the tick itself stays.
    connect(m_txtHead, &QLineEdit::textChanged, this,
            [this](const QString& header) { m_chkAdd->setEnabled(header.isEmpty()); });
    connect(help, &LinkLabel::Clicked, this, &AddPanel::HeaderHelpWanted);
    connect(m_cmdAdd, &QPushButton::clicked, this, &AddPanel::addIt);
    auto* form = new QWidget;
    layOut(form);
    setWidget(form);
    setWidgetResizable(true);
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void AddPanel::layOut(QWidget* form)
{
    auto* column = new QVBoxLayout(form);
    const auto add = [column](QLabel* label, QWidget* box) {
        column->addWidget(label);
        column->addWidget(box);
        column->addSpacing(column->spacing());
    };
    add(m_lbl[0], m_cmbCat);
    add(m_lbl[2], m_txtName);
    add(m_lbl[1], m_txtUrl);
    add(m_lbl[3], m_txtHead);
    column->addWidget(m_chkAdd);
    column->addWidget(m_cmdAdd, 0, Qt::AlignRight);
    column->addStretch();
    // The link is a stop of the Tab key of its own, behind the box that it is about.
    const QList<QWidget*> order = {m_cmbCat, m_txtName, m_txtUrl, m_txtHead,
                                   m_lbl[3], m_chkAdd,  m_cmdAdd};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void AddPanel::startAnew(const QStringList& categories)
{
    m_cmbCat->clear();
    m_cmbCat->addItems(cameraCategories());
    for (const QString& category : categories) {
        if (!cameraCategories().contains(category))
            m_cmbCat->addItem(category);
    }
    m_cmbCat->setCurrentIndex(m_cmbCat->findText(DefaultCategory));
    m_txtName->setText(u"New"_s);
    m_txtUrl->setText(u"http://"_s);
    m_txtHead->clear();
    m_chkAdd->setChecked(false);
}

int AddPanel::neededWidth() const
{
    return widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width();
}

bool AddPanel::isThere(const QString& text, QWidget* box, const QString& title,
                       const QString& message)
{
    if (!text.isEmpty())
        return true;
    box->setFocus();
    m_messages->tell({QMessageBox::Information, title, message});
    return false;
}

/// From a box whose turn is not the last: without an address there is nothing to add yet.
void AddPanel::enterPressed()
{
    const QString url = m_txtUrl->text().trimmed();
    if (url.isEmpty() || !withoutHttpScheme(url).isEmpty())
        addIt();
}

/// Kept: only emptiness is tested, so the untouched "http://" is an address and "New" a name.
void AddPanel::addIt()
{
    const QString category = enteredCategory(*m_cmbCat);
    const QString name = m_txtName->text().trimmed();
    const QString url = m_txtUrl->text().trimmed();
    // Kept: "Catagory" and "catagory" are what these texts always said.
    if (!isThere(category, m_cmbCat, u"Catagory"_s, u"Please choose or create a catagory."_s) ||
        !isThere(name, m_txtName, u"Name"_s, u"Please choose a Name."_s) ||
        !isThere(url, m_txtUrl, u"URL"_s, u"Please choose a URL."_s))
        return;
    const auto key = takeCameraKey(joinCameraKey(url, m_txtHead->text()), *m_messages);
    if (!key)
        return;
    const auto [address, extraHeader] = splitCameraKey(*key);
    emit CameraEntered({name, address, extraHeader, category},
                       m_chkAdd->isChecked() && m_chkAdd->isEnabled());
}
