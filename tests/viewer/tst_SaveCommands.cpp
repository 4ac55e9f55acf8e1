// Files saved by the file commands: which name is offered, what is saved, and what is said.

#include "support/FileCommandsScene.h"
#include "support/RunAgain.h"

class SaveCommandsTest : public FileCommandsScene
{
    Q_OBJECT
private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void withoutAPictureNoSaveDialogOpens()
    {
        m_imgMain->setPicture({});
        m_files->SaveImage();
        QVERIFY(!anyDialogIsOpen());
        QCOMPARE(m_status, QStringList{});
        QVERIFY(!m_window->findChild<QFileDialog*>());
    }

    void theNameDecidesTheFormatAndTheTypeLendsItsEnding_data()
    {
        const Rows<QString, QString, QString, QByteArray> row("type", "typed", "file", "begins");
        const QByteArray jpeg = "\xFF\xD8\xFF";
        row("gif", "JPEG (*.jpg)", "a.gif", "a.gif", "GIF8");
        row("bitmap", "JPEG (*.jpg)", "a.bmp", "a.bmp", "BM");
        row("JPG", "GIF (*.gif)", "a.JPG", "a.JPG", jpeg);
        row("jpeg", "JPEG (*.jpg)", "a.jpeg", "a.jpeg.jpg", jpeg);
        row("jpeg, as a bitmap", "Bitmap (*.bmp)", "a.jpeg", "a.jpeg.bmp", "BM");
        row("png", "GIF (*.gif)", "a.png", "a.png.gif", "GIF8");
        row("no ending", "JPEG (*.jpg)", "a", "a.jpg", jpeg);
        row("a dot at the end", "JPEG (*.jpg)", "a.", "a..jpg", jpeg);
        row("xgif", "JPEG (*.jpg)", "xgif", "xgif.jpg", jpeg);
        row("two characters", "GIF (*.gif)", "if", "if.gif", "GIF8");
        row("movie", "JPEG (*.jpg)", "a.pvm", "a.pvm.jpg", jpeg);
    }

    void theNameDecidesTheFormatAndTheTypeLendsItsEnding()
    {
        QFETCH(QString, type);
        QFETCH(QString, typed);
        QFETCH(QString, file);
        QFETCH(QByteArray, begins);
        const ScratchFile wanted(file);
        QFileDialog* dialog = dialogOf(&FileCommands::SaveImage);
        QVERIFY(dialog);
        chooseType(dialog, type);
        answer(dialog, wanted.folder() + '/' + typed);
        QVERIFY(wanted.content().startsWith(begins));
        QCOMPARE(Still::fromBytes(wanted.content()).size(), QSize(32, 24));
        QCOMPARE(wanted.names(), QStringList{file});
        QCOMPARE(m_saved, QStringList{wanted.path()});
        QCOMPARE(m_status + m_notSaved, QStringList{});
        QVERIFY(!anyDialogIsOpen());
    }

    void aNameOfCameraAndTimeIsOffered_data()
    {
        const Rows<QString, QString, QString> row("camera", "key", "name");
        const QString time = " 2026-11-21 18-09-05";
        row("of the list", "Clock", "example.org:8080/a.jpg", "Clock" + time);
        row("host", "", "example.org:8080/a.jpg\001X: y", "example.org" + time);
        row("host behind TLS", " ", "https://example.org/a.jpg", "example.org" + time);
        row("IPv6", "", "[::1]:80/a.jpg", "__1" + time);
        row("no camera", "", "", "Image" + time);
        row("odd characters", " a/b\\c:d*e?f\"g<h>i|j\tk\177 ", "x",
            "a_b_c_d_e_f_g_h_i_j_k_" + time);
        row("hidden", "..a", "x", "_.a" + time);
        row("letters of the world", "\u00dcber \u6771\u4eac", "x", "\u00dcber \u6771\u4eac" + time);
        row("long", QString(300, 'x'), "x", QString(200, 'x') + time);
        row("long in bytes", QString(300, u'\u6771'), "x", QString(66, u'\u6771') + time);
        row("long in pairs", QString("\U0001F600").repeated(60), "x",
            QString("\U0001F600").repeated(50) + time);
    }

    void aNameOfCameraAndTimeIsOffered()
    {
        QFETCH(QString, camera);
        QFETCH(QString, key);
        QFETCH(QString, name);
        m_files->setClock([] {
            return QDateTime(QDate(2026, 11, 21), QTime(18, 9, 5)).toUTC(); // shown as local time
        });
        m_files->setCamera(camera, key);
        QFileDialog* dialog = dialogOf(&FileCommands::SaveImage);
        QVERIFY(dialog);
        QCOMPARE(nameIn(dialog), name + ".jpg");
        QCOMPARE(dialog->selectedNameFilter(), "JPEG (*.jpg)");
        QTest::mouseClick(acceptButton(dialog), Qt::LeftButton);
        QCOMPARE(m_saved, QStringList{m_home->filePath(name + ".jpg")});
        QVERIFY(contentOf(m_saved.value(0)).startsWith("\xFF\xD8\xFF"));

        dialog = dialogOf(&FileCommands::SaveMovie);
        QVERIFY(dialog);
        QCOMPARE(nameIn(dialog), name + ".pvm");
    }

    void anotherTypeChangesTheEnding()
    {
        QFileDialog* dialog = dialogOf(&FileCommands::SaveImage);
        QVERIFY(dialog);
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText("a.jpg");
        chooseType(dialog, "GIF (*.gif)");
        QCOMPARE(nameIn(dialog), "a.gif");
        chooseType(dialog, "Bitmap (*.bmp)");
        QCOMPARE(nameIn(dialog), "a.bmp");
        QTest::mouseClick(acceptButton(dialog), Qt::LeftButton);
        QVERIFY(contentOf(m_home->filePath("a.bmp")).startsWith("BM"));
        // The next one begins with JPEG again.
        dialog = dialogOf(&FileCommands::SaveImage);
        QVERIFY(dialog);
        QCOMPARE(dialog->selectedNameFilter(), "JPEG (*.jpg)");
    }

    void thePictureOnShowAtTheClickIsSaved_data()
    {
        const Rows<QImage> row("later");
        row("another is on show by then", plainImage({7, 5}, Qt::blue));
        row("none is", {});
    }

    void thePictureOnShowAtTheClickIsSaved()
    {
        QFETCH(QImage, later);
        ScratchFile file("a.bmp");
        QFileDialog* dialog = dialogOf(&FileCommands::SaveImage);
        QVERIFY(dialog);
        m_imgMain->setPicture(later.isNull() ? Still() : Still::fromImage(later));
        m_files->SaveImage(); // the dialog is open already
        answer(dialog, file.path());
        const QImage saved = Still::fromBytes(file.content()).image();
        QCOMPARE(saved.size(), QSize(32, 24));
        QCOMPARE(saved.pixelColor(3, 3), QColor(Qt::red));
    }

    void aFailedSaveIsToldWithItsReasonAndKeepsTheOldFile()
    {
        if (ranAsOrdinaryUser())
            return;
        ScratchFile file("a.jpg");
        file.setContent("old");
        QVERIFY(QFile::setPermissions(file.path(), QFile::ReadOwner));
        run(&FileCommands::SaveImage, file.path());
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QTRY_COMPARE(m_notSaved, QStringList{file.path() + ": Permission denied"});
        QCOMPARE(m_saved, QStringList{});
        QCOMPARE(file.content(), "old");
    }

    void aFullDiskIsTold()
    {
        if (ranWithOwnMounts())
            return;
        ScratchFile file("a.bmp");
        QCOMPARE(mountSmallDisk(file.folder(), 64), "mounted");
        show(plainImage({200, 200}, Qt::red));
        run(&FileCommands::SaveImage, file.path());
        QCOMPARE(m_notSaved, QStringList{file.path() + ": No space left on device"});
        QCOMPARE(file.names(), QStringList{});
    }

    void whatIsReplacedIsAskedByItsWholeName()
    {
        // A file of the very name that is typed is in no danger, and not asked about.
        const ScratchFile file("a.jpg");
        const QString typed = file.folder() + "/a";
        writeFile(typed, "other");
        run(&FileCommands::SaveImage, typed);
        QVERIFY(file.content().startsWith("\xFF\xD8\xFF"));
        QCOMPARE(contentOf(typed), "other");

        file.setContent("old");
        run(&FileCommands::SaveImage, typed);
        QCOMPARE(answerMessage(QMessageBox::No).text,
                 "a.jpg already exists.\nDo you want to replace it?");
        QCOMPARE(file.content(), "old");
    }

    void replacingAFileAsksFirst()
    {
        ScratchFile file("a.gif");
        file.setContent("old");
        QFileDialog* dialog = dialogOf(&FileCommands::SaveImage);
        QVERIFY(dialog);
        answer(dialog, file.path());
        QCOMPARE(QThread::currentThread()->loopLevel(), 0);
        const ShownMessage question = answerMessage(QMessageBox::No);
        QVERIFY(question.shown);
        QCOMPARE(question.text, "a.gif already exists.\nDo you want to replace it?");
        QVERIFY(dialog->isVisible());
        QCOMPARE(file.content(), "old");

        QTRY_VERIFY(!dialog->findChild<QMessageBox*>());
        QTest::mouseClick(acceptButton(dialog), Qt::LeftButton);
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QTRY_VERIFY(file.content().startsWith("GIF8"));
        QVERIFY(!anyDialogIsOpen());
        QCOMPARE(m_status, QStringList{});
    }
};

QTEST_MAIN(SaveCommandsTest)
#include "tst_SaveCommands.moc"
