// The commands that open and save files: their dialogs, and what becomes of the answer.

#include "support/FileCommandsScene.h"
#include "support/RunAgain.h"

#include <QListView>

class FileCommandsTest : public FileCommandsScene
{
    Q_OBJECT
private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void theDialogIsTheWindowsOwnAndModal()
    {
        for (const Command command : {&FileCommands::OpenImage, &FileCommands::SaveImage,
                                      &FileCommands::OpenMovie, &FileCommands::SaveMovie}) {
            QFileDialog* dialog = dialogOf(command);
            QVERIFY(dialog);
            QCOMPARE(dialog->objectName(), "cd");
            QCOMPARE(dialog->parentWidget(), m_window.get());
            QCOMPARE(dialog->windowModality(), Qt::WindowModal);
            QCOMPARE(QThread::currentThread()->loopLevel(), 0);
            const QPointer<QFileDialog> gone = dialog;
            dialog->reject();
            QTRY_VERIFY(!gone);
        }
    }

    void eachDialogShowsItsFiltersTexts_data()
    {
        const Rows<Command, QStringList, QStringList> row("command", "texts", "patterns");
        row("open image", &FileCommands::OpenImage, {"Image Files (*.bmp,*.jpg,*.gif)"},
            {"(*.bmp *.jpg *.gif)"});
        row("save image", &FileCommands::SaveImage,
            {"Bitmap (*.bmp)", "GIF (*.gif)", "JPEG (*.jpg)"}, {"(*.bmp)", "(*.gif)", "(*.jpg)"});
        row("open movie", &FileCommands::OpenMovie, {"Pevora Movie (*.pvm)"}, {"(*.pvm)"});
        row("save movie", &FileCommands::SaveMovie, {"Pevora Movie (*.pvm)"}, {"(*.pvm)"});
    }

    void eachDialogShowsItsFiltersTexts()
    {
        QFETCH(Command, command);
        QFETCH(QStringList, texts);
        QFETCH(QStringList, patterns);
        QFileDialog* dialog = dialogOf(command);
        QVERIFY(dialog);
        const auto* combo = dialog->findChild<QComboBox*>("fileTypeCombo");
        QStringList shown;
        for (int i = 0; i < combo->count(); ++i)
            shown.append(combo->itemText(i));
        QCOMPARE(shown, texts);
        QStringList filters;
        for (qsizetype i = 0; i < texts.size(); ++i)
            filters.append(texts[i] + patterns[i]);
        QCOMPARE(dialog->nameFilters(), filters);
    }

    void filesAreListedWithoutRegardToCase()
    {
        for (const char* name : {"a.bmp", "b.JPG", "c.Gif", "d.png", "e.jpeg", "f.gif.txt"})
            writeFile(m_home->filePath(name), {});
        QFileDialog* dialog = dialogOf(&FileCommands::OpenImage);
        QVERIFY(dialog);
        auto* list = dialog->findChild<QListView*>("listView");
        const auto listed = [list] {
            QStringList names;
            for (int row = 0; row < list->model()->rowCount(list->rootIndex()); ++row)
                names.append(list->model()->index(row, 0, list->rootIndex()).data().toString());
            names.sort();
            return names;
        };
        QTRY_COMPARE(listed(), (QStringList{"a.bmp", "b.JPG", "c.Gif"}));
    }

    void openImageShowsTheFilesPicture()
    {
        // The content counts, not the name.
        ScratchFile file("picture.txt");
        file.setContent(smallGif());
        run(&FileCommands::OpenImage, file.path());
        QCOMPARE(m_opened, QList{smallGif()});
        QCOMPARE(m_status, QStringList{});
        QVERIFY(!anyDialogIsOpen());
    }

    void whatIsNoPictureIsTold_data()
    {
        const Rows<bool> row("exists");
        row("no picture", true);
        row("no such file", false);
    }

    void whatIsNoPictureIsTold()
    {
        QFETCH(bool, exists);
        ScratchFile file("a.jpg");
        if (exists)
            file.setContent("text");
        run(&FileCommands::OpenImage, file.path());
        QCOMPARE(m_status, QStringList{"  Error: Not a picture."});
        QCOMPARE(m_opened, QList<QByteArray>{});
        QCOMPARE(m_imgMain->Picture().size(), QSize(32, 24));
        QVERIFY(!anyDialogIsOpen());
    }

    void aFileTooLongForAPictureIsNotOpened()
    {
        ScratchFile file("a.jpg");
        file.setContent(encodedPicture({8, 8}, Qt::red));
        QVERIFY(QFile::resize(file.path(), Still::MaxEncodedBytes + 1));
        run(&FileCommands::OpenImage, file.path());
        QCOMPARE(m_opened, QList<QByteArray>{});
        QCOMPARE(m_status, QStringList{"  Error: Not a picture."});
    }

    void aFileThatMustNotBeReadIsToldAsNoPicture()
    {
        if (ranAsOrdinaryUser())
            return;
        ScratchFile file("a.jpg");
        file.setContent(encodedPicture({8, 8}, Qt::red));
        QVERIFY(QFile::setPermissions(file.path(), {}));
        run(&FileCommands::OpenImage, file.path());
        QCOMPARE(m_opened, QList<QByteArray>{});
        QCOMPARE(m_status, QStringList{"  Error: Not a picture."});
    }

    void cancelChangesNothing_data() { commands(); }

    void cancelChangesNothing()
    {
        QFETCH(Command, command);
        ScratchFile file("a.gif");
        file.setContent("old");
        QFileDialog* dialog = dialogOf(command);
        QVERIFY(dialog);
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(file.path());
        QTest::mouseClick(dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel),
                          Qt::LeftButton);
        QVERIFY(!anyDialogIsOpen());
        QCOMPARE(file.content(), "old");
        QCOMPARE(m_status + m_moviesToOpen + m_moviesToSave, QStringList{});
        QCOMPARE(m_opened, QList<QByteArray>{});
        // The next one opens.
        QVERIFY(dialogOf(command));
    }

    void anEmptyNameIsNoAnswer()
    {
        QFileDialog* dialog = dialogOf(&FileCommands::SaveMovie);
        QVERIFY(dialog);
        answer(dialog, "");
        QVERIFY(dialog->isVisible());
        QCOMPARE(m_moviesToSave, QStringList{});
    }

    void whoeverAsksForAFileSaysSo_data() { commands(); }

    void whoeverAsksForAFileSaysSo()
    {
        QFETCH(Command, command);
        QSignalSpy answered(m_files, &FileCommands::Answered);
        QVERIFY(!m_files->isAsking());
        for (const bool cancels : {true, false}) {
            QFileDialog* dialog = dialogOf(command);
            QVERIFY(dialog);
            QVERIFY(m_files->isAsking());
            if (cancels)
                dialog->reject();
            else
                answer(dialog, m_home->filePath("a"));
            QVERIFY(!m_files->isAsking());
            QCOMPARE(answered.size(), cancels ? 1 : 2);
        }
        // What the answer asks for has been done before.
        QCOMPARE((m_status + m_saved + m_moviesToOpen + m_moviesToSave).size(), 1);
    }

    void theQuestionShowsTheNameAsPlainText()
    {
        ScratchFile file("<b>a<b>.pvm");
        file.setContent("old");
        run(&FileCommands::SaveMovie, file.path());
        const auto* box = openDialog<QMessageBox>();
        QVERIFY(box);
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QVERIFY(box->text().startsWith("<b>a<b>.pvm already"));
    }

    void aFolderIsEnteredNotReplaced()
    {
        QVERIFY(QDir(m_home->path()).mkdir("folder.gif"));
        for (const Command command : {&FileCommands::SaveImage, &FileCommands::OpenImage}) {
            QFileDialog* dialog = dialogOf(command);
            QVERIFY(dialog);
            answer(dialog, m_home->filePath("folder.gif"));
            QVERIFY(dialog->isVisible());
            QCOMPARE(dialog->directory().path(), m_home->filePath("folder.gif"));
            QVERIFY(!dialog->findChild<QMessageBox*>());
            dialog->reject();
        }
        QCOMPARE(m_status, QStringList{});
    }

    void moviesAreLeftToTheOwner()
    {
        ScratchFile file("a.pvm");
        run(&FileCommands::SaveMovie, file.path());
        run(&FileCommands::SaveMovie, file.path() + "x");
        run(&FileCommands::SaveMovie, file.folder() + "/a");
        QCOMPARE(m_moviesToSave, (QStringList{file.path(), file.path() + "x.pvm", file.path()}));
        QVERIFY(!QFileInfo::exists(file.path()));
        run(&FileCommands::OpenMovie, file.path());
        QCOMPARE(m_moviesToOpen, QStringList{file.path()});
        QCOMPARE(m_status, QStringList{});
    }

    void theFirstFolderIsPicturesElseHome()
    {
        QFileDialog* dialog = dialogOf(&FileCommands::OpenImage);
        QVERIFY(dialog);
        QCOMPARE(dialog->directory().path(), m_home->path());
        dialog->reject();
        QVERIFY(QDir(m_home->path()).mkdir("Pictures"));
        dialog = dialogOf(&FileCommands::SaveMovie);
        QVERIFY(dialog);
        QCOMPARE(dialog->directory().path(), m_home->filePath("Pictures"));
    }

    void theNextDialogStartsInTheLastFolder()
    {
        auto file = std::make_unique<ScratchFile>("a.gif");
        run(&FileCommands::SaveImage, file->path());
        QFileDialog* dialog = dialogOf(&FileCommands::OpenMovie);
        QVERIFY(dialog);
        QCOMPARE(dialog->directory().path(), file->folder());
        dialog->reject();
        // A folder that is gone: as at first.
        file.reset();
        dialog = dialogOf(&FileCommands::OpenMovie);
        QVERIFY(dialog);
        QCOMPARE(dialog->directory().path(), m_home->path());
    }

    void oneDialogAtATime()
    {
        QFileDialog* first = dialogOf(&FileCommands::OpenImage);
        QVERIFY(first);
        m_files->SaveMovie();
        m_files->OpenImage();
        QCOMPARE(m_window->findChildren<QFileDialog*>(), QList{first});
        answer(first, m_home->filePath("none"));
        QCOMPARE(m_moviesToSave, QStringList{});
        QCOMPARE(m_status.size(), 1);
    }

    void anAnswersHandlerMayAskAgain()
    {
        connect(m_files, &FileCommands::MovieOpenRequested, m_files, &FileCommands::SaveMovie);
        run(&FileCommands::OpenMovie, m_home->filePath("a.pvm"));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_files->OpenMovie(); // the new one is open
        QCOMPARE(m_window->findChildren<QFileDialog*>().size(), 1);
        run(&FileCommands::SaveMovie, m_home->filePath("b.pvm"));
        QCOMPARE(m_moviesToSave, QStringList{m_home->filePath("b.pvm")});
    }

    void theViewerMayGoWhileADialogIsOpen_data() { commands(); }

    void theViewerMayGoWhileADialogIsOpen()
    {
        QFETCH(Command, command);
        // The viewer alone, then the whole window.
        QPointer<QFileDialog> dialog = dialogOf(command);
        QVERIFY(dialog);
        delete m_files->parent();
        QTRY_VERIFY(!dialog);
        QVERIFY(!m_files);

        begin();
        dialog = dialogOf(command);
        QVERIFY(dialog);
        m_window.reset();
        QVERIFY(!dialog);
        QVERIFY(!anyDialogIsOpen());
    }

    void theViewerMayGoWhileTheQuestionIsOpen()
    {
        ScratchFile file("a.gif");
        file.setContent("old");
        run(&FileCommands::SaveImage, file.path());
        QVERIFY(openDialog<QMessageBox>());
        m_window.reset();
        QVERIFY(!anyDialogIsOpen());
        QCOMPARE(file.content(), "old");
    }
};

QTEST_MAIN(FileCommandsTest)
#include "tst_FileCommands.moc"
