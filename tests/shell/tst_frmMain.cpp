// How the main window comes up: preferences, favourites, menus and captions.

#include "display/ImageView.h"
#include "support/Rows.h"
#include "support/ShownMain.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"

#include <QAccessible>
#include <QCheckBox>
#include <QMenuBar>
#include <QRadioButton>

#include <functional>
#include <tuple>
#include <utility>

class frmMainTest : public QObject
{
    Q_OBJECT
private slots:
    void startsWithoutPreferences()
    {
        OpenMain m;
        QCOMPARE(m.made().windowTitle(), "Pevora");
        for (const char* on :
             {"mnuViewList", "mnuViewTb", "mnuViewGoto", "mnuViewNew", "mnuViewTray"})
            QVERIFY2(m.entry(on).isChecked(), on);
        for (const char* off : {"mnuViewOSize", "mnuOptOnTop"})
            QVERIFY2(!m.entry(off).isChecked(), off);
        for (const char* name : {"cList", "opt(0)", "opt(1)"})
            QVERIFY2(m.part<QWidget>(name).isVisible(), name);
        auto& cam = m.part<WebCam>("Cam");
        QVERIFY(cam.ShowToolBar());
        QVERIFY(m.part<ToolBar>("tbMain").isVisible());
        QVERIFY(m.part<QComboBox>("cmbUrl").isVisible());
        QVERIFY(cam.NewOnly());
        QVERIFY(!cam.OriginalSize());
        QVERIFY(!cam.KeepRefreshing());
        QVERIFY(!m.made().windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        QVERIFY(!m.entry("mnuFavGo(0)").isVisible());
        QCOMPARE(m.entry("mnuFavGo(0)").text(), "");
        QVERIFY(!m.made().findChild<QAction*>("mnuFavGo(1)"));
        QVERIFY(!QFileInfo::exists(m.path("pref.ini"))); // the first shut-down creates it
    }

    void eachViewKeyIsApplied_data()
    {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("entry");
        QTest::addColumn<bool>("isOn");

        const struct
        {
            const char* key;
            const char* entry;
            bool atFirst;
        } keys[] = {{"LIST", "mnuViewList", true},    {"TB", "mnuViewTb", true},
                    {"GOTO", "mnuViewGoto", true},    {"NEW", "mnuViewNew", true},
                    {"TRAY", "mnuViewTray", true},    {"ONTOP", "mnuOptOnTop", false},
                    {"OSIZE", "mnuViewOSize", false}, {"KEEP", "mnuTmrKeep", false}};
        for (const auto& [key, entry, atFirst] : keys) {
            const auto row = [&, key = key, entry = entry](const char* value, bool isOn) {
                QTest::addRow("%s=%s", key, value) << key << QByteArray(key) + "=" + value + "\r\n"
                                                   << entry << isOn;
            };
            row("True", true);
            row("False", false);
            row("true", true);
            row("FALSE", false);
            for (const char* noTruth : {"", "yes", "1", "0", "-1", "Trueish", "\xFF\x01"})
                row(noTruth, atFirst);
            QTest::addRow("%s absent", key) << key << QByteArray() << entry << atFirst;
        }
    }

    void eachViewKeyIsApplied()
    {
        QFETCH(QString, key);
        QFETCH(QByteArray, line);
        QFETCH(QString, entry);
        QFETCH(bool, isOn);
        ShownMain m;
        m.write("pref.ini", "[VIEW]\r\n" + line);
        QCOMPARE(m.entry(entry).isChecked(), isOn);

        auto& cam = m.part<WebCam>("Cam");
        const QMap<QString, std::function<bool()>> targets = {
            {"LIST",
             [&] {
                 const bool shown = !m.part<QWidget>("cList").isHidden();
                 return shown == !m.part<QWidget>("opt(0)").isHidden() &&
                                shown == !m.part<QWidget>("opt(1)").isHidden()
                            ? shown
                            : !isOn;
             }},
            {"TB", [&] { return cam.ShowToolBar() && !m.part<ToolBar>("tbMain").isHidden(); }},
            {"GOTO", [&] { return !m.part<QComboBox>("cmbUrl").isHidden(); }},
            {"NEW", [&] { return cam.NewOnly(); }},
            {"ONTOP", [&] { return m.made().windowFlags().testFlag(Qt::WindowStaysOnTopHint); }},
            {"OSIZE",
             [&] { return cam.OriginalSize() && m.part<ImageView>("imgMain").OriginalSize(); }},
            {"KEEP", [&] { return cam.KeepRefreshing(); }}};
        if (const auto target = targets.value(key))
            QCOMPARE(target(), isOn);
        // No key switches what is another's.
        for (const auto& [other, entryOfOther, atFirst] :
             {std::tuple{"TB", "mnuViewTb", true}, std::tuple{"OSIZE", "mnuViewOSize", false}}) {
            if (key != other)
                QCOMPARE(m.entry(entryOfOther).isChecked(), atFirst);
        }
    }

    void unknownKeysAreLeftAlone()
    {
        ShownMain m;
        const QByteArray foreign = "; mine\r\n[OTHER]\r\nLIST=False\r\n[VIEW]\r\nHUE=12\r\n";
        m.write("pref.ini", foreign);
        QVERIFY(m.entry("mnuViewList").isChecked());
        m.made().close();
        QVERIFY(m.preferences().startsWith(foreign));
    }

    void favouritesAreInTheMenu()
    {
        ShownMain m;
        m.write("pref.ini",
                "[FAVORITES]\r\nNAME[0]=Harbour\r\nURL[0]=cam/h\r\nNAME[1]=AT&T && more\r\n"
                "URL[1]=att/a\r\nNAME[2]=\r\nURL[2]=cam/3\r\nCOUNT=3\r\n");
        QCOMPARE(m.entry("mnuFavGo(0)").text(), "Harbour");
        QCOMPARE(m.entry("mnuFavGo(1)").text(), "AT&&T &&&& more");
        QCOMPARE(m.entry("mnuFavGo(2)").text(), "");
        const auto actions = m.part<QMenu>("mnuFav").actions();
        QStringList names;
        for (const auto* one : actions) {
            names << (one->isSeparator() ? "-" : one->objectName());
            QVERIFY(one->isVisible());
        }
        QCOMPARE(names,
                 (QStringList{"mnuFavMan", "-", "mnuFavGo(0)", "mnuFavGo(1)", "mnuFavGo(2)"}));
    }

    void aFavouriteIsOneLineOfPlainText()
    {
        OpenMain m(
            "[FAVORITES]\r\nNAME[0]=Left\tRight\r\nURL[0]=a\r\nNAME[1]=" + QByteArray(700, 'W') +
            "end\r\nURL[1]=b\r\nNAME[2]=<b>bold</b>\r\n"
            "URL[2]=c\r\nCOUNT=3\r\n");
        // What follows a tab would stand in the column of the shortcuts.
        QCOMPARE(m.entry("mnuFavGo(0)").text(), "Left Right");
        QVERIFY(m.entry("mnuFavGo(1)").text().endsWith("end"));
        QCOMPARE(m.entry("mnuFavGo(2)").text(), "<b>bold</b>");
        QVERIFY(m.part<QMenu>("mnuFav").sizeHint().width() < 600);
        // The record keeps what the file holds.
        m.made().close();
        QVERIFY(m.preferences().contains("NAME[0]=Left\tRight\r\n"));
        QVERIFY(m.preferences().contains("NAME[1]=" + QByteArray(700, 'W') + "end\r\n"));
    }

    void menusHaveTheirEntries_data()
    {
        const Rows<QStringList> row("entries");
        row("mnuOpt", {"mnuOptInt|Internet List", "-", "mnuOptImport|Import List",
                       "mnuOptReload|Reload List", "mnuOptExport|Export List", "-",
                       "mnuOptExit|Exit|Ctrl+Q", "mnuOptExitWO|Exit Without Saving", "-",
                       "mnuOptOnTop|Always on Top||off", "mnuViewTray|System Tray Icon||on"});
        row("mnuFav", {"mnuFavMan|Manage Favorites", "-", "mnuFavGo(0)|"});
        row("mnuView",
            {"mnuViewList|List|Ctrl+L|on", "mnuViewTb|Toolbar|Ctrl+T|on",
             "mnuViewGoto|Goto Bar|Ctrl+G|on", "-", "mnuViewNew|New Images Only|Ctrl+I|on",
             "mnuViewOSize|Original Size|Ctrl+O|off", "mnuViewProp|Keep Proportions||off",
             "mnuViewFull|Full Screen|F11"});
        row("mnuHelp", {"mnuHelpAb|About", "-", "mnuHelpH|Online Help|F1"});
    }

    void menusHaveTheirEntries()
    {
        ShownMain m;
        QStringList found;
        for (const auto* one : m.part<QMenu>(QTest::currentDataTag()).actions()) {
            QString text = one->isSeparator() ? "-" : one->objectName() + "|" + one->text();
            if (one->isCheckable() || !one->shortcut().isEmpty())
                text += "|" + one->shortcut().toString();
            if (one->isCheckable())
                text += one->isChecked() ? "|on" : "|off";
            found << text;
        }
        QTEST(found, "entries");
    }

    void theMenusStandInTheirOrder()
    {
        ShownMain m;
        QStringList found;
        for (const auto* one : m.made().menuBar()->actions())
            found << one->menu()->objectName() + "|" + one->text();
        QCOMPARE(found, (QStringList{"mnuOpt|&Options", "mnuFav|&Favorites", "mnuView|&View",
                                     "mnuHelp|&Help"}));
    }

    void aLanguageFileRelabelsTheMenus()
    {
        ShownMain m;
        m.write("lan.ini", "[MAIN]\r\nVIEW=Ansicht\r\n");
        QCOMPARE(m.part<QMenu>("mnuView").title(), "&Ansicht");
        // Every key that the file lacks falls back to the file's own defaults.
        QCOMPARE(m.part<QMenu>("mnuOpt").title(), "&Options");
        QCOMPARE(m.entry("mnuOptOnTop").text(), "Always On Top");
        QCOMPARE(m.entry("mnuViewTb").text(), "ToolBar");
        // These keep their captions in every language.
        QCOMPARE(m.entry("mnuViewTray").text(), "System Tray Icon");
        QCOMPARE(m.entry("mnuViewOSize").text(), "Original Size");
        QCOMPARE(m.made().windowTitle(), "Pevora");
    }

    void aLanguageFileRelabelsTheLeftColumn()
    {
        ShownMain m;
        m.write("lan.ini", "[MAIN]\r\nLIST=Liste\r\nBADD=Neu & mehr\r\nBADDIT=Dazu\r\nNAME=Wer:\r\n"
                           "EXTRA=\r\nADDINT=An alle\r\n");
        QCOMPARE(m.part<QRadioButton>("opt(1)").text(), "Liste");
        QCOMPARE(m.entry("mnuViewList").text(), "Liste");
        QCOMPARE(m.part<QRadioButton>("opt(0)").text(), "Neu && mehr");
        QCOMPARE(m.part<QPushButton>("cmdAdd").text(), "Dazu");
        QCOMPARE(m.part<QLabel>("lbl(2)").text(), "Wer:");
        QCOMPARE(m.part<QCheckBox>("chkAdd").text(), "An alle");
        // What the file lacks or leaves empty falls back to the file's own defaults.
        QCOMPARE(m.part<QLabel>("lbl(0)").text(), "Category");
        QCOMPARE(m.part<QLabel>("lbl(3)").text(), "Extra Header (ie: Cookie)");
        // This one keeps its caption in every language.
        QCOMPARE(m.part<QLabel>("lbl(1)").text(), "Url: (*.bmp,*.gif,*.jpg)");
    }

    void withoutALanguageFileTheDesignCaptionsStay()
    {
        ShownMain m;
        QCOMPARE(m.entry("mnuOptOnTop").text(), "Always on Top");
        QCOMPARE(m.entry("mnuViewTb").text(), "Toolbar");
    }

    void theLanguageFileIsLookedForInTwoFolders()
    {
        ShownMain m;
        m.writeBesideProgram("lan.ini", "[MAIN]\r\nEXIT=Beside the program\r\n");
        QCOMPARE(m.entry("mnuOptExit").text(), "Beside the program");
        // A folder of that name is no language file.
        QVERIFY(QDir().mkdir(m.path("lan.ini")));
        m.madeAgain();
        QCOMPARE(m.entry("mnuOptExit").text(), "Beside the program");
        QVERIFY(QDir().rmdir(m.path("lan.ini")));
        m.write("lan.ini", "[MAIN]\r\nEXIT=Application folder\r\n");
        m.madeAgain();
        QCOMPARE(m.entry("mnuOptExit").text(), "Application folder");
    }

    void accessKeysFollowTheCaptions()
    {
        ShownMain m;
        m.write("lan.ini", "[MAIN]\r\nOPTION=View\r\nFAV=V&Volume\r\nVIEW=i v\r\nHELP=(?) v 7\r\n");
        QStringList titles;
        for (const auto* one : m.made().menuBar()->actions())
            titles << one->text();
        QCOMPARE(titles, (QStringList{"&View", "V&&V&olume", "&i v", "(?) v &7"}));
        m.write("lan.ini",
                "[MAIN]\r\nOPTION=View\r\nFAV=v\r\nVIEW=\xC3\x84nd\r\nHELP=\xC3\xA4?\r\n");
        m.madeAgain();
        titles.clear();
        for (const auto* one : m.made().menuBar()->actions())
            titles << one->text();
        QCOMPARE(titles, (QStringList{"&View", "v", QString("&\u00C4nd"), QString("\u00E4?")}));
    }

    void anAccessKeyOpensItsMenu()
    {
        OpenMain m;
        for (const auto& [key, menu] :
             {std::pair{Qt::Key_O, "mnuOpt"}, std::pair{Qt::Key_F, "mnuFav"},
              std::pair{Qt::Key_V, "mnuView"}, std::pair{Qt::Key_H, "mnuHelp"}}) {
            QTest::keyClick(m.part<QComboBox>("cmbUrl").lineEdit(), key, Qt::AltModifier);
            QTRY_VERIFY(m.part<QMenu>(menu).isVisible());
            m.part<QMenu>(menu).close();
        }
    }

    void everyControlHasANameToBeSpoken()
    {
        ShownMain m;
        int spoken = 0;
        for (auto* one : m.shown().findChildren<QWidget*>()) {
            // The list that drops down from the goto bar speaks for itself by its entries.
            if (one->focusPolicy() == Qt::NoFocus || one->window() != &m.made())
                continue;
            auto* interface = QAccessible::queryAccessibleInterface(one);
            QVERIFY(interface);
            QVERIFY2(!interface->text(QAccessible::Name).isEmpty(),
                     qPrintable(QString(one->metaObject()->className()) + one->objectName()));
            ++spoken;
        }
        QVERIFY(spoken > 10);
    }

    void theKeyboardIsInTheGotoBar()
    {
        OpenMain m;
        QCOMPARE(QApplication::focusWidget(), &m.part<QComboBox>("cmbUrl"));
    }
};

QTEST_MAIN(frmMainTest)
#include "tst_frmMain.moc"
