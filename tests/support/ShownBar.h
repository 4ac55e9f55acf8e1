#pragma once

#include "camlist/CamList.h"
#include "shell/parts/GotoBar.h"
#include "support/Waiting.h"

#include <QLineEdit>
#include <QTemporaryDir>

/// A bar in a window, with three cameras, and a second field that can take the keyboard.
class ShownBar
{
public:
    ShownBar()
    {
        list.AddCam("AT&T", "att/a.jpg", "Cities");
        list.AddCam("Harbour", "cam.example/h.jpg", "Cities");
        list.AddCam("Tower", "cam.example/t.jpg", "Sights");
        window.resize(500, 100);
        bar.setGeometry(0, 0, 400, 30);
        other.setGeometry(0, 50, 400, 30);
        window.show();
        window.activateWindow();
        if (!waitForActive(&window))
            qFatal("the window does not become active");
        bar.setFocus();
    }
    void type(const QString& text) { QTest::keyClicks(&bar, text); }
    void enter(const QString& text)
    {
        bar.setEditText(text);
        QTest::keyClick(&bar, Qt::Key_Return);
    }
    QString lastChosen()
    {
        return chosen.isEmpty() ? "(none)" : chosen.takeLast().value(0).toString();
    }
    QStringList entries() const
    {
        QStringList all;
        for (int i = 0; i < bar.count(); ++i)
            all << bar.itemText(i);
        return all;
    }

    QTemporaryDir folder;
    CamList list{folder.path(), nullptr};
    QWidget window;
    GotoBar bar{list, &window};
    QLineEdit other{&window};
    QSignalSpy chosen{&bar, &GotoBar::CameraChosen};
};
