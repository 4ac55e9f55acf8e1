#pragma once

#include "directory/frmInt.h"
#include "support/ScriptedServer.h"

#include <QPointer>
#include <QTemporaryDir>

class QAction;
class QLabel;
class QPushButton;
class QTreeView;

/// The open window "Internet List" in a person's hands, with a server that plays the directory. The
/// test says with `server.play(...)` what the directory answers, before it asks.
class ShownDirectory
{
public:
    /// The window comes up where the port is 0 with the scripted server as its directory, else with
    /// another server on that port.
    explicit ShownDirectory(quint16 port = 0);
    /// With the scripted server, whose newest cameras are these and have been found.
    explicit ShownDirectory(const QByteArray& body)
        : ShownDirectory()
    {
        find(body);
    }
    ~ShownDirectory();

    QTreeView& list() const;
    QPushButton& button(const QString& name) const;
    QAction& entry(const QString& name) const;
    QString title() const { return window->windowTitle(); }
    /// What the line below the list says, and the hint below that; empty while it is hidden.
    QString status() const;
    QString hint() const;
    QString path(const QString& name = QStringLiteral("icl.zip")) const;

    /// The rows as "category|name"; a checked one begins with "[x] ".
    QStringList rows() const;
    QString key(int row) const;

    /// Presses a button, by no mouse.
    void press(const QString& name) const;
    void check(int row) const;

    /// Chooses the entry and waits until its query is over.
    void query(const QString& entryName) const;
    /// The same, after setting up a server's answer with this body.
    void find(const QByteArray& body, const QString& entryName = QStringLiteral("mnuOptNew"));

    ScriptedServer server;
    QTemporaryDir folder;
    QPointer<frmInt> window;
    /// What the window asked for: keys to preview; and the content of each file to import.
    QStringList previews;
    QList<QByteArray> imports;
};

/// The body of cameras "category|name|key".
QByteArray directoryBody(const QStringList& cameras);
