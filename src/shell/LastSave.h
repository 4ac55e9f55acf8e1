#pragma once

#include "shared/SaveOutcome.h"

#include <QObject>
#include <QPointer>

class CamList;
class Favourites;
class QMessageBox;
class QWidget;
class ViewPreferences;
class WindowPreferences;

/// The last save of a run: pref.ini and list.dat when the program ends, and what happens where one
/// of them cannot be written, so that nothing goes without a word.
///
/// A person is asked (box "boxNotSaved"): "Try Again", "Save Elsewhere..." with a folder of their
/// choice, or "Quit Anyway". Where nobody can answer, because the session ends or a signal came,
/// what is not saved is copied into the user's own data folder, and a line on stderr tells of it.
class LastSave : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        const ViewPreferences& view;
        const WindowPreferences& window;
        Favourites& favourites;
        CamList& list;
    };

    /// What list.dat is to be: the list, or what it was when the program started.
    enum class List { Saved, AsAtStart };

    /// `folder` is the application folder. `window` is what the message stands above.
    LastSave(const QString& folder, const Parts& parts, QWidget& window);

    void savePreferences();
    void saveList(List list);

    /// Whether all that was to be saved is on the disk.
    bool isDone() const { return m_preferences && m_list; }

    /// Opens the message. Ended follows when it was answered in the end; never, while the program
    /// runs on, where rescue() comes before that.
    void ask();

    /// Copies what is not saved into the user's data folder, under names that nothing has yet, and
    /// says on stderr what was not saved and where the copy is. Closes the message.
    void rescue();

signals:
    /// Nothing is left to do: isDone(), saved elsewhere, or given up.
    void Ended();

private:
    void tryAgain();
    void askForFolder();
    void saveElsewhere(const QString& folder);
    SaveOutcome copyPreferences(const QString& path);
    SaveOutcome copyInto(const QString& folder, QStringList* copies = nullptr);
    QStringList unsaved() const;

    QString m_folder;
    Parts m_parts;
    QWidget& m_window;
    SaveOutcome m_preferences;
    SaveOutcome m_list;
    List m_kind = List::Saved;
    QPointer<QMessageBox> m_message;
};
