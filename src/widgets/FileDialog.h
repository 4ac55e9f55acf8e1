#pragma once

#include <QFileDialog>

class MessageQueue;

/// The dialog `cd` that asks for the name of one file to open or to save. It answers by
/// FileChosen, or not at all, and is gone after it has closed.
///
/// A file to save gets the ending of the type that is chosen, where its name has none of all types'
/// endings; another type chosen changes the ending.
///
/// QFileDialog asks before a file is replaced, and complains of one that is missing, in boxes
/// with an event loop of their own, which outlives a window that closes meanwhile. Here the
/// question is a box that is opened, and a missing file is chosen like any other.
class FileDialog : public QFileDialog
{
    Q_OBJECT

public:
    /// Owned by `window`, and modal to it once it is opened, by open(). Starts in `folder`.
    /// `filters` are Qt's name filters. The last group in parentheses, the patterns, is not shown:
    /// a text that names them does so in a group of its own before that.
    FileDialog(AcceptMode mode, const QStringList& filters, const QString& folder, QWidget* window);

signals:
    /// The file, with its whole path; never empty. The dialog has closed.
    void FileChosen(const QString& path);

protected:
    void accept() override;

private:
    QString withEnding(const QString& path) const;
    bool askBeforeReplacing(const QString& path);
    void showAgain(const QString& path);

    MessageQueue* m_messages;
};
