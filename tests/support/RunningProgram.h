#pragma once

#include <QProcess>
#include <QRect>
#include <QTemporaryDir>

#include <memory>
#include <vector>

/// A copy of the program in a scratch folder that an ordinary user owns, run by that user. Nothing
/// that it started outlives it.
class RunningProgram
{
public:
    RunningProgram();
    ~RunningProgram();

    /// Files of the program's folder and of the user's home folder, which is the runtime folder
    /// too.
    QString program(const QString& name = {}) const { return pathOf("program", name); }
    QString home(const QString& name = {}) const { return pathOf("home", name); }
    /// Writes a file into the program's folder, for the user.
    void write(const QString& name, const QByteArray& content) const;
    void writePreferences(const QByteArray& content) const { write("pref.ini", content); }
    /// A file of the program's folder; empty where it is missing.
    QByteArray read(const QString& name) const;
    QByteArray preferences() const { return read("pref.ini"); }

    /// Starts it and waits for its window; false where none came.
    bool start(const QStringList& arguments = {});
    /// Starts one more of the same, beside it, and waits for nothing.
    QProcess& startAnother(const QStringList& arguments, const QString& workingFolder = {});

    bool ends() { return ends(process); }
    static bool ends(const QProcess& one);
    /// Waits until it has ended; returns its exit status, or what else became of it.
    QByteArray ended() { return ended(process); }
    static QByteArray ended(QProcess& one);
    static void terminate(const QProcess& one);
    /// Asks it to end, and waits as ended() does.
    QByteArray terminated() { return terminated(process); }
    static QByteArray terminated(QProcess& one)
    {
        terminate(one);
        return ended(one);
    }

    /// Seconds of processor time so far, which a busy machine does not lengthen.
    double secondsUsed() const;
    static QString tell(const QString& command, const QStringList& arguments);
    QString property(const QString& name) const;
    /// The number of the main window of `one` on the screen; empty where it has none.
    static QString windowOf(const QProcess& one);

    /// Presses keys, as xdotool names them, once the window has the keyboard; false where it does
    /// not get it.
    bool press(const QStringList& keys) const;
    /// Where the window is on the screen, in pixels and without its frame.
    QRect place() const;

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QProcess process;
    QString window;

private:
    QString pathOf(const QString& folder, const QString& name) const;
    void launch(QProcess& one, const QStringList& arguments) const;

    QTemporaryDir m_scratch;
    std::vector<std::unique_ptr<QProcess>> m_others;
};
