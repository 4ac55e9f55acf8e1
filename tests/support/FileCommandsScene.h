#pragma once

#include "display/ImageView.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/Waiting.h"
#include "viewer/FileCommands.h"
#include "widgets/FileDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSettings>

#include <algorithm>
#include <memory>

Q_DECLARE_METATYPE(void (FileCommands::*)())

inline QAbstractButton* acceptButton(QFileDialog* dialog)
{
    auto* box = dialog->findChild<QDialogButtonBox*>();
    return box->button(dialog->acceptMode() == QFileDialog::AcceptSave ? QDialogButtonBox::Save
                                                                       : QDialogButtonBox::Open);
}

inline bool anyDialogIsOpen()
{
    const auto windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && qobject_cast<const QDialog*>(window);
    });
}

/// The file commands of a viewer in a window of its own, with a home folder that is empty, what
/// they tell, and the dialog as a person answers it. A test class derives from it; the functions
/// of a test's beginning and end are the same names.
class FileCommandsScene : public QObject
{
public:
    /// Qt keeps the look of its file dialog there.
    static void initMain()
    {
        static const QTemporaryDir settings;
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    }

protected:
    void begin()
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

    void end()
    {
        m_window.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

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
