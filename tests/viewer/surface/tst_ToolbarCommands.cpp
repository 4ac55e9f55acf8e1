#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"
#include "viewer/surface/ToolbarCommands.h"

class ToolbarCommandsTest : public QObject
{
    Q_OBJECT
private slots:
    void eachPlaceRunsItsOwnCommand()
    {
        ToolBar bar(nullptr);
        QStringList log;
        const ToolbarCommands commands(bar,
                                       {{1, ToolbarCommands::Face, [&] { log << "face"; }},
                                        {1, 1, [&] { log << "first"; }},
                                        {1, 2, [&] { log << "second"; }},
                                        {12, 2, [&] { log << "other"; }}},
                                       nullptr);
        emit bar.ButtonMenuClick(1, 2);
        bar.button(1)->click();
        emit bar.ButtonMenuClick(12, 2);
        emit bar.ButtonMenuClick(1, 1);
        QCOMPARE(log, (QStringList{"second", "face", "other", "first"}));
    }

    void placesWithoutACommandDoNothing()
    {
        ToolBar bar(nullptr);
        int runs = 0;
        const ToolbarCommands commands(bar, {{4, ToolbarCommands::Face, [&] { ++runs; }}}, nullptr);
        for (const int button : {0, 3, 5, 16, -1})
            emit bar.ButtonClick(button);
        for (const int item : {1, 2, -1})
            emit bar.ButtonMenuClick(4, item);
        QCOMPARE(runs, 0);
        emit bar.ButtonClick(4);
        QCOMPARE(runs, 1);
    }
};

QTEST_MAIN(ToolbarCommandsTest)
#include "tst_ToolbarCommands.moc"
