#include "shell/notices/frmSignIn.h"

#include "cameras/CameraTexts.h"
#include "cameras/TypedCamera.h"
#include "widgets/InputBoxes.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int SignInBoxCharacters = 30;

} // namespace

frmSignIn::frmSignIn(const QString& host, bool isSecure, QWidget* parent)
    : QDialog(parent)
    , m_txtName(new QLineEdit(this))
    , m_txtPassword(new QLineEdit(this))
{
    setObjectName(u"frmSignIn"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Sign In"));
    auto* form = new QFormLayout(this);
    const auto addText = [this, form](const QString& text) {
        auto* label = new QLabel(text, this);
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        form->addRow(label);
    };
    addText(tr("%1 wants a name and password.").arg(shownLine(host)));
    if (!isSecure)
        addText(tr("This connection is not encrypted: both can be read on the way."));

    m_txtName->setObjectName(u"txtName"_s);
    m_txtName->setAccessibleName(tr("Name"));
    m_txtName->setMinimumWidth(m_txtName->fontMetrics().averageCharWidth() * SignInBoxCharacters);
    form->addRow(tr("Name:"), m_txtName);
    m_txtPassword->setObjectName(u"txtPassword"_s);
    m_txtPassword->setAccessibleName(tr("Password"));
    m_txtPassword->setEchoMode(QLineEdit::Password);
    form->addRow(tr("Password:"), m_txtPassword);
    takeTextsOfAnyLength(m_txtName);
    takeTextsOfAnyLength(m_txtPassword);

    // Both with a caption of ours: the standard ones alone would have an icon.
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole)->setObjectName(u"cmdCan"_s);
    auto* signIn = buttons->addButton(tr("Sign In"), QDialogButtonBox::AcceptRole);
    signIn->setObjectName(u"cmdSignIn"_s);
    signIn->setDefault(true);
    signIn->setEnabled(false);
    connect(m_txtName, &QLineEdit::textChanged, signIn,
            [signIn](const QString& name) { signIn->setEnabled(!name.isEmpty()); });
    connect(signIn, &QPushButton::clicked, this, &frmSignIn::signIn);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    form->addRow(buttons);
    m_txtName->setFocus();
}

void frmSignIn::signIn()
{
    emit SignedIn(basicAuthorization(m_txtName->text().toUtf8(), m_txtPassword->text().toUtf8()));
    accept();
}
