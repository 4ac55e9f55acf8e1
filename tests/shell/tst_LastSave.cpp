// What cannot be saved at the end is asked about, or copied where nobody can answer.

#include "camlist/CamList.h"
#include "support/Dialogs.h"
#include "support/MessageLog.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"
#include "support/ShownMain.h"
#include "support/Waiting.h"

#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>

namespace {

/// A main window with a camera of its own, whose folder goes away before it is closed.
class UnsavableMain : public OpenMain
{
public:
    UnsavableMain() { part<CamList>("cList").AddCam("Clock", "cam.example/clock.jpg", "Odd"); }

    void close()
    {
        takeFolder();
        made().close();
    }
    void takeFolder() const { QVERIFY(QDir(path(".")).removeRecursively()); }
    void giveFolder() const { QVERIFY(QDir().mkpath(path("."))); }

    QMessageBox& message()
    {
        auto* box = openDialog<QMessageBox>();
        if (!box || box->objectName() != "boxNotSaved")
            qFatal("no message");
        return *box;
    }
    void press(const QString& caption)
    {
        for (auto* button : message().buttons()) {
            if (button->text() == caption)
                return QTest::mouseClick(button, Qt::LeftButton);
        }
        QFAIL(qPrintable("no button " + caption));
    }

    QTemporaryDir elsewhere;
};

/// The exit status of the program when `answer` has run; -1 where it runs on.
template<typename Answer>
int statusAfter(Answer answer)
{
    QTimer::singleShot(0, answer);
    QTimer giveUp;
    giveUp.callOnTimeout([] { QCoreApplication::exit(-1); });
    giveUp.start(20'000);
    return QCoreApplication::exec();
}

} // namespace

class LastSaveTest : public QObject
{
    Q_OBJECT
private slots:
    void aRefusedSaveKeepsTheWindow()
    {
        UnsavableMain m;
        m.close();
        const QString text = m.message().text();
        QVERIFY2(text.contains(m.path("list.dat") + ": "), qPrintable(text));
        QVERIFY2(text.contains(m.path("pref.ini") + ": "), qPrintable(text));
        QCOMPARE(text.count(": No such file or directory"), 2);
        QVERIFY(m.made().isVisible());
        // Not for a second time either.
        m.made().close();
        QVERIFY(m.made().isVisible());
        QCOMPARE(m.message().defaultButton()->text(), "Try Again");
    }

    void tryAgainSavesWhatIsPossibleByNow()
    {
        UnsavableMain m;
        m.close();
        m.press("Try Again");
        m.message(); // nothing has changed
        m.giveFolder();
        QCOMPARE(statusAfter([&m] { m.press("Try Again"); }), 0);
        QVERIFY(contentOf(m.path("list.dat")).contains("cam.example/clock.jpg"));
        QVERIFY(m.preferences().contains("TRAY=True"));
        QVERIFY(!m.made().isVisible());
    }

    void escapeTriesAgain()
    {
        UnsavableMain m;
        m.close();
        m.giveFolder();
        QCOMPARE(statusAfter([&m] { QTest::keyClick(&m.message(), Qt::Key_Escape); }), 0);
        QVERIFY(contentOf(m.path("list.dat")).contains("cam.example/clock.jpg"));
    }

    void elsewhereTakesACopy()
    {
        UnsavableMain m;
        // What is there stays.
        writeFile(m.elsewhere.filePath("list.dat"), "another");
        m.close();
        m.press("Save Elsewhere...");
        const int status = statusAfter([&m] {
            auto* dialog = openDialog<QFileDialog>();
            QVERIFY(dialog);
            dialog->setDirectory(m.elsewhere.path());
            dialog->selectFile(m.elsewhere.path());
            QMetaObject::invokeMethod(dialog, "accept");
        });
        QCOMPARE(status, 0);
        QCOMPARE(contentOf(m.elsewhere.filePath("list.dat")), "another");
        QVERIFY(contentOf(m.elsewhere.filePath("Pevora 1 list.dat"))
                    .contains("cam.example/clock.jpg\r\n"));
        QVERIFY(contentOf(m.elsewhere.filePath("pref.ini")).contains("TRAY=True"));
        QVERIFY(!QFileInfo::exists(m.path("list.dat")));
    }

    void noFolderAsksOnceMore()
    {
        UnsavableMain m;
        m.close();
        m.press("Save Elsewhere...");
        auto* dialog = openDialog<QFileDialog>();
        QVERIFY(dialog);
        dialog->reject();
        QTRY_VERIFY(!dialog->isVisible());
        m.message();
        // And one that refuses is told of.
        m.press("Save Elsewhere...");
        dialog = openDialog<QFileDialog>();
        QVERIFY(dialog);
        dialog->selectFile(m.elsewhere.path());
        QVERIFY(QDir(m.elsewhere.path()).removeRecursively());
        QMetaObject::invokeMethod(dialog, "done", Q_ARG(int, QDialog::Accepted));
        QTRY_VERIFY(m.message().text().contains(m.elsewhere.path()));
        QVERIFY(m.made().isVisible());
    }

    void quitAnywayEndsWithStatusOne()
    {
        UnsavableMain m;
        m.close();
        QCOMPARE(statusAfter([&m] { m.press("Quit Anyway"); }), 1);
        QVERIFY(!m.made().isVisible());
        QVERIFY(!QFileInfo::exists(m.path("list.dat")));
    }

    void theEndOfTheSessionAsksNobody_data()
    {
        const Rows<bool, bool> row("closedBefore", "asked");
        row("at once", false, false);
        row("while the window saves", true, false);
        row("while the message waits", true, true);
    }

    void theEndOfTheSessionAsksNobody()
    {
        QFETCH(bool, closedBefore);
        QFETCH(bool, asked);
        UnsavableMain m;
        qputenv("XDG_DATA_HOME", m.elsewhere.path().toUtf8());
        m.takeFolder();
        MessageLog log;
        const int status = statusAfter([&] {
            // The events that wait are handled while it saves.
            if (closedBefore && !asked)
                QTimer::singleShot(0, &m.made(), &frmMain::shutDown);
            if (closedBefore)
                m.made().close();
            if (asked)
                m.message();
            if (asked || !closedBefore)
                m.made().shutDown();
        });
        QCOMPARE(status, 1);
        qunsetenv("XDG_DATA_HOME");
        QStringList lines;
        for (const auto& [category, text] : log.messages())
            lines << text;
        const QString told = lines.join('\n');
        QVERIFY2(told.contains("Not saved: " + m.path("list.dat")), qPrintable(told));
        const QString copy = m.elsewhere.filePath("pevora/list.dat");
        QVERIFY2(told.contains("A copy is in " + copy), qPrintable(told));
        QVERIFY(contentOf(copy).contains("cam.example/clock.jpg"));
        QVERIFY(contentOf(m.elsewhere.filePath("pevora/pref.ini")).contains("TRAY=True"));
        for (auto* window : QApplication::topLevelWidgets())
            QVERIFY(!qobject_cast<QMessageBox*>(window) || !window->isVisible());
    }

    /// A folder that may be read and not written.
    void theCopyKeepsWhatThePreferencesHeld()
    {
        if (ranAsOrdinaryUser())
            return;
        UnsavableMain m;
        m.write("pref.ini", "[DIRECTORY]\r\nHOST=directory.example\r\n[FAVORITES]\r\n"
                            "NAME[0]=Clock\r\nURL[0]=cam.example/clock.jpg\r\nCOUNT=1\r\n");
        m.madeAgain();
        m.part<CamList>("cList").AddCam("Late", "cam.example/late.jpg", "Odd");
        const auto rights = QFile::permissions(m.path("."));
        QVERIFY(QFile::setPermissions(m.path("."), QFile::ReadOwner | QFile::ExeOwner));
        qputenv("XDG_DATA_HOME", m.elsewhere.path().toUtf8());
        const int status = statusAfter([&m] { m.made().shutDown(); });
        QVERIFY(QFile::setPermissions(m.path("."), rights));
        QCOMPARE(status, 1);
        const QByteArray copy = contentOf(m.elsewhere.filePath("pevora/pref.ini"));
        QVERIFY(copy.startsWith("[DIRECTORY]\r\nHOST=directory.example\r\n"));
        QCOMPARE(copy.count("cam.example/clock.jpg"), 1);
        QVERIFY(copy.contains("TRAY=True"));
        QVERIFY(contentOf(m.elsewhere.filePath("pevora/list.dat")).contains("late.jpg"));
    }
};

QTEST_MAIN(LastSaveTest)
#include "tst_LastSave.moc"
