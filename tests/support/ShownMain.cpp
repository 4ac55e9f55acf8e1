#include "support/ShownMain.h"
#include "support/ScratchFile.h"

#include "support/Waiting.h"

#include <QFile>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

ShownMain::~ShownMain() = default;

void ShownMain::write(const QString& name, const QByteArray& content) const
{
    writeFile(path(name), content);
}

void ShownMain::writeBesideProgram(const QString& name, const QByteArray& content) const
{
    writeFile(programPath(name), content);
}

QByteArray ShownMain::preferences() const
{
    QFile file(path(QStringLiteral("pref.ini")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

frmMain& ShownMain::made(const QString& commandLine)
{
    if (!m_window) {
        m_window = std::make_unique<frmMain>(
            frmMain::Folders{m_application.path(), m_program.path()}, commandLine);
    }
    return *m_window;
}

frmMain& ShownMain::shown()
{
    made().show();
    made().activateWindow();
    if (!waitForActive(m_window.get()))
        qFatal("the main window does not become active");
    return *m_window;
}

frmMain& ShownMain::madeAgain()
{
    m_window.reset();
    return made();
}

QAction& ShownMain::entry(const QString& name)
{
    return part<QAction>(name);
}

void ShownMain::choose(const QString& menu, const QString& entryName)
{
    auto& list = part<QMenu>(menu);
    auto& bar = *made().menuBar();
    QTest::mouseClick(&bar, Qt::LeftButton, {}, bar.actionGeometry(list.menuAction()).center());
    if (!waitForExposed(&list))
        qFatal("the menu %s does not open", qPrintable(menu));
    QTest::mouseClick(&list, Qt::LeftButton, {}, list.actionGeometry(&entry(entryName)).center());
}

OpenMain::OpenMain(const QByteArray& preferences)
{
    if (!preferences.isNull())
        write(QStringLiteral("pref.ini"), preferences);
    shown();
}
