#pragma once

#include <QDialog>
#include <QString>

class QLineEdit;

/// Asks for the name and the password that a camera wants. It is modal, and deletes itself when it
/// closes.
class frmSignIn : public QDialog
{
    Q_OBJECT

public:
    /// `host` is the camera's host, as a person knows it. `isSecure`: what is typed goes out over
    /// TLS; else the window says that it can be read on the way.
    frmSignIn(const QString& host, bool isSecure, QWidget* parent);

signals:
    /// "Sign In" was chosen. `header` is the request header line that says who asks:
    /// "Authorization: Basic ..." (RFC 7617).
    void SignedIn(const QString& header);

private:
    void signIn();

    QLineEdit* m_txtName;
    QLineEdit* m_txtPassword;
};
