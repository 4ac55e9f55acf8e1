#include "camlist/frmEdit.h"

#include "cameras/CameraKey.h"
#include "cameras/CameraTexts.h"
#include "widgets/InputBoxes.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int BoxWidthCharacters = 40;

} // namespace

frmEdit::frmEdit(const QStringList& categories, QWidget* parent)
    : QDialog(parent)
    , m_messages(new MessageQueue(this))
    , m_cmbCat(new QComboBox(this))
{
    setObjectName(u"frmEdit"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    auto* form = new QFormLayout(this);

    m_cmbCat->setObjectName(u"cmbCat"_s);
    takeCategories(m_cmbCat);
    m_cmbCat->addItems(categories);
    // Kept: "Catagory" is what this label always said.
    form->addRow(u"Catagory: "_s, m_cmbCat);

    m_txtName = addBox(u"txtName"_s, u"Name: "_s, tr("Name"));
    m_txtUrl = addBox(u"txtUrl"_s, u"Url: "_s, tr("Address"));
    m_txtExtra = addBox(u"txtExtra"_s, u"Extra: "_s, tr("Extra header"));
    cleanWhileTyping(m_txtName);
    cleanKeyWhileTyping(m_txtUrl, m_txtExtra);

    auto* buttons = new QDialogButtonBox(this);
    auto* cmdGo = buttons->addButton(u"Update"_s, QDialogButtonBox::AcceptRole);
    cmdGo->setObjectName(u"cmdGo"_s);
    cmdGo->setDefault(true);
    auto* cmdCan = buttons->addButton(u"Cancel"_s, QDialogButtonBox::RejectRole);
    cmdCan->setObjectName(u"cmdCan"_s);
    form->addRow(buttons);
    connect(cmdGo, &QPushButton::clicked, this, &frmEdit::update);
    connect(cmdCan, &QPushButton::clicked, this, &frmEdit::reject);
}

QLineEdit* frmEdit::addBox(const QString& name, const QString& label, const QString& spoken)
{
    auto* box = new QLineEdit(this);
    box->setObjectName(name);
    box->setAccessibleName(spoken);
    box->setMinimumWidth(box->fontMetrics().averageCharWidth() * BoxWidthCharacters);
    takeTextsOfAnyLength(box);
    static_cast<QFormLayout*>(layout())->addRow(label, box);
    return box;
}

void frmEdit::edit(const CameraRecord& camera)
{
    m_edited = camera;
    const auto [address, extraHeader] = splitCameraKey(camera.key);
    // "[*]" in a title stands for a mark of unsaved changes unless it is there twice.
    setWindowTitle(shownLine(camera.name).replace("[*]"_L1, "[*][*]"_L1) + " Properties"_L1);
    m_cmbCat->setEditText(camera.category);
    m_txtName->setText(camera.name);
    m_txtUrl->setText(address);
    m_txtExtra->setText(extraHeader);
    for (QLineEdit* box : {m_cmbCat->lineEdit(), m_txtName, m_txtUrl, m_txtExtra})
        box->setCursorPosition(0);
    m_txtName->setFocus();
    m_txtName->selectAll();
    open();
}

/// A key that was not touched stays, whatever it is: lists come from anywhere.
void frmEdit::update()
{
    CameraRecord updated = {enteredCategory(*m_cmbCat), m_txtName->text(),
                            joinCameraKey(m_txtUrl->text(), m_txtExtra->text())};
    if (updated.name != m_edited.name)
        updated.name = updated.name.trimmed();
    if (updated.key != m_edited.key) {
        const auto key = takeCameraKey(updated.key, *m_messages);
        if (!key)
            return;
        updated.key = *key;
    }
    emit Updated(updated);
}

void frmEdit::refuse(const MessageQueue::Message& reason)
{
    m_messages->tell(reason);
}
