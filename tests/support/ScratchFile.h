#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// What the file `path` holds; "none" where it cannot be read.
QByteArray contentOf(const QString& path);

/// Replaces what it holds; ends the program where that fails.
void writeFile(const QString& path, const QByteArray& bytes);

/// Everything in a folder, hidden or not.
QStringList namesIn(const QString& folder);

/// A file in a folder of its own that goes with it; not there until it is given content.
class ScratchFile
{
public:
    explicit ScratchFile(const QString& name)
        : m_path(m_folder.filePath(name))
    {
    }

    QString path() const { return m_path; }
    QString folder() const { return m_folder.path(); }
    /// What is in its folder, with itself.
    QStringList names() const { return namesIn(folder()); }

    QByteArray content() const { return contentOf(m_path); }
    void setContent(const QByteArray& bytes) const { writeFile(m_path, bytes); }

    /// Waits until the file was last changed so long ago that its time stamp can be trusted.
    void waitUntilSettled() const;

private:
    QTemporaryDir m_folder;
    QString m_path;
};
