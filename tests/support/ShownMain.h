#pragma once

#include "shell/frmMain.h"

#include <QApplication>
#include <QTemporaryDir>

#include <memory>

class QAction;

/// The main window with scratch folders for the application and the program. It is shown as soon
/// as a test asks for it; what it finds there is written before.
class ShownMain
{
public:
    ~ShownMain();

    /// Writes a file into the application folder, or into the program's.
    void write(const QString& name, const QByteArray& content) const;
    void writeBesideProgram(const QString& name, const QByteArray& content) const;
    QString path(const QString& name) const { return m_application.filePath(name); }
    QString programPath(const QString& name) const { return m_program.filePath(name); }
    /// The content of pref.ini; empty where there is none.
    QByteArray preferences() const;

    /// Makes the window; it is not on screen yet.
    frmMain& made(const QString& commandLine = {});
    /// Makes it where that was not done, shows it and waits until it has the keyboard.
    frmMain& shown();
    /// Makes a new window in the same folders, as the next run of the program does.
    frmMain& madeAgain();

    /// The control or menu of that object name; ends the program where there is none.
    template<typename T>
    T& part(const QString& name)
    {
        auto* found = made().findChild<T*>(name);
        if (!found)
            qFatal("the main window has no %s", qPrintable(name));
        return *found;
    }
    QAction& entry(const QString& name);

    /// Opens the menu by a click and clicks its entry, as a person does.
    void choose(const QString& menu, const QString& entry);

private:
    QTemporaryDir m_application;
    QTemporaryDir m_program;
    std::unique_ptr<frmMain> m_window;
};

/// The same, on screen from the beginning. `preferences` is what pref.ini holds; where it is null
/// there is none.
class OpenMain : public ShownMain
{
public:
    explicit OpenMain(const QByteArray& preferences = {});
};
