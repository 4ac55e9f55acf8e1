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
        for (QStringList* list : {&m_status, &m_moviesToOpen, &m_moviesToSave})
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

    void saveImageWritesTheNameAsItIsTyped_data()
    {
        const Rows<QString, QByteArray> row("name", "begins");
        row("gif", "a.gif", "GIF8");
        row("JPG", "a.JPG", "\xFF\xD8\xFF");
        row("jpeg", "a.jpeg", "BM");
        row("png", "a.png", "BM");
        row("no ending", "a", "BM");
        row("xgif", "xgif", "GIF8");
        row("two characters", "if", "BM");
    }

    void saveImageWritesTheNameAsItIsTyped()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, begins);
        ScratchFile file(name);
        run(&FileCommands::SaveImage, file.path());
        QVERIFY(file.content().startsWith(begins));
        QCOMPARE(Still::fromBytes(file.content()).size(), QSize(32, 24));
        QCOMPARE(QDir(file.folder()).entryList(QDir::Files), QStringList{name});
        QCOMPARE(m_status, QStringList{});
    }

    void theFilterDoesNotChooseTheFormat()
    {
        ScratchFile file("a");
        QFileDialog* dialog = dialogOf(&FileCommands::SaveImage);
        QVERIFY(dialog);
        auto* combo = dialog->findChild<QComboBox*>("fileTypeCombo");
        combo->setCurrentIndex(2);
        emit combo->activated(2);
        QCOMPARE(dialog->selectedNameFilter(), "JPEG (*.jpg)");
        answer(dialog, file.path());
        QVERIFY(file.content().startsWith("BM"));
        QCOMPARE(QDir(file.folder()).entryList(QDir::Files), QStringList{"a"});
    }

    void thePictureOnShowAtTheAnswerIsSaved()
    {
        ScratchFile file("a.bmp");
        QFileDialog* dialog = dialogOf(&FileCommands::SaveImage);
        QVERIFY(dialog);
        show(plainImage({7, 5}, Qt::blue));
        answer(dialog, file.path());
        const QImage saved = Still::fromBytes(file.content()).image();
        QCOMPARE(saved.size(), QSize(7, 5));
        QCOMPARE(saved.pixelColor(3, 3), QColor(Qt::blue));
    }

    void aPictureGoneAtTheAnswerIsNotSaved()
    {
        ScratchFile file("a.bmp");
        QFileDialog* dialog = dialogOf(&FileCommands::SaveImage);
        QVERIFY(dialog);
        m_imgMain->setPicture({});
        answer(dialog, file.path());
        QVERIFY(!QFileInfo::exists(file.path()));
        QCOMPARE(m_status, QStringList{"  Error: Not saved."});
    }

    void aFailedSaveIsToldAndKeepsTheOldFile()
    {
        if (ranAsOrdinaryUser())
            return;
        ScratchFile file("a.jpg");
        file.setContent("old");
        QVERIFY(QFile::setPermissions(file.path(), QFile::ReadOwner));
        run(&FileCommands::SaveImage, file.path());
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QTRY_COMPARE(m_status, QStringList{"  Error: Not saved."});
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

    void theQuestionShowsTheNameAsPlainText()
    {
        ScratchFile file("<b>a<b>.gif");
        file.setContent("old");
        run(&FileCommands::SaveMovie, file.path());
        const auto* box = openDialog<QMessageBox>();
        QVERIFY(box);
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QVERIFY(box->text().startsWith("<b>a<b>.gif already"));
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
        // Also a name without the ending is taken as it is.
        run(&FileCommands::SaveMovie, file.path());
        run(&FileCommands::SaveMovie, file.path() + "x");
        QCOMPARE(m_moviesToSave, (QStringList{file.path(), file.path() + "x"}));
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

    void run(Command command, const QString& typed) { answer(dialogOf(command), typed); }

    std::unique_ptr<QTemporaryDir> m_home;
    std::unique_ptr<QWidget> m_window;
    QPointer<FileCommands> m_files;
    ImageView* m_imgMain = nullptr; ///< The viewer's.
    /// The bytes of each.
    QList<QByteArray> m_opened;
    QStringList m_status;
    QStringList m_moviesToOpen;
    QStringList m_moviesToSave;
};

QTEST_MAIN(FileCommandsTest)
#include "tst_FileCommands.moc"
