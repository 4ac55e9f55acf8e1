#include "support/MainInUse.h"

#include "camlist/CameraTreeModel.h"
#include "display/ImageView.h"
#include "support/Dialogs.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QTest>
#include <QWindow>

QList<CameraRecord> MainInUse::cameras()
{
    return list().findChild<CameraTreeModel*>()->cameras();
}

QStringList MainInUse::favouritesMenu()
{
    QStringList found;
    for (const auto* one : part<QMenu>("mnuFav").actions().mid(2)) {
        if (one->isVisible())
            found << one->text();
    }
    return found;
}

Preferences MainInUse::options()
{
    const auto truth = [](bool on) { return QString(on ? "True" : "False"); };
    const Qt::WindowFlags flags = made().windowHandle()->flags();
    return {{"VIEW/LIST", truth(list().isVisible())},
            {"VIEW/TB", truth(part<ToolBar>("tbMain").isVisible())},
            {"VIEW/GOTO", truth(part<QComboBox>("cmbUrl").isVisible())},
            {"VIEW/NEW", truth(cam().NewOnly())},
            {"VIEW/OSIZE", truth(cam().OriginalSize())},
            {"WINDOW/PROPORTIONS", truth(cam().KeepProportions())},
            {"VIEW/TRAY", truth(entry("mnuViewTray").isChecked())},
            {"VIEW/ONTOP", truth(flags.testFlag(Qt::WindowStaysOnTopHint))}};
}

void MainInUse::switchAllOptions()
{
    for (const ViewOption& one : ViewOptions) {
        const bool before = entry(one.entry).isChecked();
        choose(one.menu, one.entry);
        QTRY_COMPARE(entry(one.entry).isChecked(), !before);
        QTRY_VERIFY(!part<QMenu>(one.menu).isVisible());
    }
}

QString MainInUse::caption()
{
    return part<QLabel>("lblPic").text();
}

int MainInUse::shownWidth()
{
    return part<ImageView>("imgMain").Picture().size().width();
}

void MainInUse::press(int button)
{
    // On the face, beside the arrow that some have.
    QTest::mouseClick(part<ToolBar>("tbMain").button(button), Qt::LeftButton, {}, QPoint(12, 14));
}

void MainInUse::save(int item, const QString& file)
{
    QSignalSpy saved(&cam(), &WebCam::Saved);
    const auto* face = part<ToolBar>("tbMain").button(ToolBar::Save);
    face->findChild<QMenu*>()->actions()[item - 1]->trigger();
    acceptFile(file);
    const auto isSaved = [&] { return saved == QList<QVariantList>{{file}} && !cam().isBusy(); };
    if (!waitFor(isSaved))
        qFatal("%s is not saved", qPrintable(file));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
