#pragma once

#include <QDialog>

class QTabWidget;

/// The window "About": what the program is and whose, and what is new in it. It deletes itself when
/// it closes, and opens no page itself.
class frmWhat : public QDialog
{
    Q_OBJECT

public:
    /// `homePage` is the address that is shown.
    frmWhat(const QString& homePage, QWidget* parent);

signals:
    /// The home page is wanted.
    void HomePageRequested(const QString& address);

private:
    QWidget* createAbout(const QString& homePage);
    QWidget* createNews();

    QTabWidget* m_tabMain;
};
