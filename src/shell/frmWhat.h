#pragma once

#include <QDialog>

class MessageQueue;
class QTabWidget;

/// The window "About": what the program is and whose, and what is new in it. It deletes itself when
/// it closes.
class frmWhat : public QDialog
{
    Q_OBJECT

public:
    /// `homePage` is the address that is shown, and that a click on it opens in the browser. Where
    /// none opens it, a message above the window tells it.
    frmWhat(const QString& homePage, QWidget* parent);

private:
    QWidget* createAbout(const QString& homePage);
    QWidget* createNews();

    QTabWidget* m_tabMain;
    MessageQueue* m_messages;
};
