#include "viewer/FileCommands.h"

#include "display/ImageView.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"
#include "widgets/FileDialog.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QListView>
#include <QSettings>

#include <algorithm>
#include <memory>

Q_DECLARE_METATYPE(void (FileCommands::*)())

static QAbstractButton* acceptButton(QFileDialog* dialog)
{
    auto* box = dialog->findChild<QDialogButtonBox*>();
    return box->button(dialog->acceptMode() == QFileDialog::AcceptSave ? QDialogButtonBox::Save
                                                                       : QDialogButtonBox::Open);
}

static bool anyDialogIsOpen()
{
    const auto windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && qobject_cast<const QDialog*>(window);
    });
}

class FileCommandsTest : public QObject
{
    Q_OBJECT
public:
    /// Qt keeps the look of its file dialog there.
    static void initMain()
    {
        static const QTemporaryDir settings;
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    }

private slots:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("HOME", m_home->path().toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", m_home->filePath("config").toLocal8Bit());
        for (QStringList* list :
             {&m_status, &m_moviesToOpen, &m_moviesToSave, &m_saved, &m_notSaved})
            list->clear();
        m_opened.clear();

        // The viewer is a child of the window, as in the program.
        m_window = std::make_unique<QWidget>();
        m_window->resize(400, 300);
        auto* viewer = new QWidget(m_window.get());
        m_imgMain = new ImageView(viewer);
        show(plainImage({32, 24}, Qt::red));
        m_files = new FileCommands(*m_imgMain, viewer);
        connect(m_files, &FileCommands::ImageOpened, this, [this](const Still& picture) {
            m_opened.append(picture.bytes());
            QVERIFY(picture.isSameAs(m_imgMain->Picture()));
        });
        connect(m_files, &FileCommands::StatusText, this,
                [this](const QString& text) { m_status.append(text); });
        connect(m_files, &FileCommands::Saved, this,
                [this](const QString& path) { m_saved.append(path); });
        connect(m_files, &FileCommands::NotSaved, this,
                [this](const QString& path, const QString& reason) {
                    m_notSaved.append(path + ": " + reason);
                });
        connect(m_files, &FileCommands::MovieOpenRequested, this,
                [this](const QString& path) { m_moviesToOpen.append(path); });
        connect(m_files, &FileCommands::MovieSaveRequested, this,
                [this](const QString& path) { m_moviesToSave.append(path); });
        m_window->show();
        QVERIFY(waitForExposed(m_window.get()));
    }

    void cleanup()
    {
        m_window.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

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

        init();
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

private:
    using Command = void (FileCommands::*)();

    static void commands()
    {
        const Rows<Command> row("command");
        row("open image", &FileCommands::OpenImage);
        row("save image", &FileCommands::SaveImage);
        row("open movie", &FileCommands::OpenMovie);
        row("save movie", &FileCommands::SaveMovie);
    }

    void show(const QImage& picture) { m_imgMain->setPicture(Still::fromImage(picture)); }

    QFileDialog* dialogOf(Command command)
    {
        (m_files->*command)();
        return openDialog<QFileDialog>();
    }

    void answer(QFileDialog* dialog, const QString& typed)
    {
        QVERIFY(dialog);
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText(typed);
        QTest::mouseClick(acceptButton(dialog), Qt::LeftButton);
    }

    static QString nameIn(QFileDialog* dialog)
    {
        return dialog->findChild<QLineEdit*>("fileNameEdit")->text();
    }

    static void chooseType(QFileDialog* dialog, const QString& type)
    {
        auto* combo = dialog->findChild<QComboBox*>("fileTypeCombo");
        const int index = combo->findText(type);
        combo->setCurrentIndex(index);
        emit combo->activated(index);
        QCOMPARE(dialog->selectedNameFilter(), type);
    }

    void run(Command command, const QString& typed) { answer(dialogOf(command), typed); }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<QWidget> m_window;
    QPointer<FileCommands> m_files;
    ImageView* m_imgMain = nullptr; ///< The viewer's.
    /// The bytes of each.
    QList<QByteArray> m_opened;
    QStringList m_status;
    QStringList m_saved;
    QStringList m_notSaved;
    QStringList m_moviesToOpen;
    QStringList m_moviesToSave;
};

QTEST_MAIN(FileCommandsTest)
#include "tst_FileCommands.moc"
