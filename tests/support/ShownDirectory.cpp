#include "support/ShownDirectory.h"

#include "support/ScratchFile.h"
#include "support/TimeSeam.h"
#include "support/Waiting.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

namespace {

constexpr int LongMs = 600'000;

template<typename T>
T& partOf(const QWidget* window, const QString& name)
{
    auto* found = window->findChild<T*>(name);
    if (!found)
        qFatal("the window has no %s", qPrintable(name));
    return *found;
}

} // namespace

ShownDirectory::ShownDirectory(quint16 port)
{
    if (!port)
        server.listen();
    window = new frmInt(folder.path(), "http://127.0.0.1", port ? port : server.port());
    // Else it would end in time what nothing else has ended.
    timerOf(*window, "Timer1").setInterval(LongMs);
    QObject::connect(window, &frmInt::Preview, window,
                     [this](const QString& key) { previews << key; });
    QObject::connect(window, &frmInt::Import, window,
                     [this](const QString& file) { imports << contentOf(file); });
    window->show();
    window->activateWindow();
    if (!waitForActive(window) || !waitFor([&] { return list().hasFocus(); }))
        qFatal("the internet list does not get the keyboard");
}

ShownDirectory::~ShownDirectory()
{
    delete window;
}

QTreeView& ShownDirectory::list() const
{
    return partOf<QTreeView>(window, "lvwList");
}

QPushButton& ShownDirectory::button(const QString& name) const
{
    return partOf<QPushButton>(window, name);
}

QAction& ShownDirectory::entry(const QString& name) const
{
    return partOf<QAction>(window, name);
}

QString ShownDirectory::status() const
{
    return partOf<QLabel>(window, "lblStatus").text();
}

QString ShownDirectory::hint() const
{
    const auto& label = partOf<QLabel>(window, "lblHint");
    return label.isVisible() ? label.text() : QString();
}

QString ShownDirectory::path(const QString& name) const
{
    return folder.filePath(name);
}

QStringList ShownDirectory::rows() const
{
    QStringList found;
    const auto& model = *list().model();
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex first = model.index(row, 0);
        const bool checked = first.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        found << (checked ? "[x] " : "") + first.data().toString() + '|' +
                     model.index(row, 1).data().toString();
    }
    return found;
}

QString ShownDirectory::key(int row) const
{
    return list().model()->index(row, 0).data(Qt::UserRole).toString();
}

void ShownDirectory::press(const QString& name) const
{
    button(name).click();
}

void ShownDirectory::check(int row) const
{
    if (!list().model()->setData(list().model()->index(row, 0), Qt::Checked, Qt::CheckStateRole))
        qFatal("row %d has no check box", row);
}

void ShownDirectory::query(const QString& entryName) const
{
    entry(entryName).trigger();
    const auto over = [&] { return title().startsWith("Finished") || title().startsWith("Error"); };
    if (!waitFor(over))
        qFatal("the query does not run to its end: %s", qPrintable(title()));
}

void ShownDirectory::find(const QByteArray& body, const QString& entryName)
{
    server.play(httpAnswer(body));
    query(entryName);
}

QByteArray directoryBody(const QStringList& cameras)
{
    QByteArray body = cameras.join('|').toLatin1();
    return body.replace('|', '\xFF');
}
