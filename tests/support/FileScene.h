#pragma once

#include "display/ImageView.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/ScratchFile.h"
#include "support/ScriptedServer.h"
#include "support/ShownCamera.h"
#include "support/TimeSeam.h"
#include "viewer/surface/ToolBar.h"

/// A small JPEG of a colour and a width of its own.
inline QByteArray numbered(int number)
{
    return encodedPicture({8 + number, 8}, QColor::fromHsv(number * 37 % 360, 255, 255));
}

/// A movie file of the pictures 1 to `frames`.
inline QByteArray movieOf(int frames)
{
    QByteArrayList parts;
    for (int number = 1; number <= frames; ++number)
        parts << numbered(number);
    return parts.join("&IMAGE&");
}

/// A viewer, a camera that it may fetch from, and a folder with files.
class Files : public ShownCamera
{
public:
    Files() { server.listen(); }

    QString write(const QString& name, const QByteArray& bytes)
    {
        writeFile(path(name), bytes);
        return path(name);
    }
    QByteArray read(const QString& name) { return contentOf(path(name)); }
    QString path(const QString& name) const { return m_files.filePath(name); }

    /// Chooses `file` in the dialog that opens, which then goes.
    static void answer(const QString& file)
    {
        acceptFile(file);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void openImage(const QByteArray& bytes, const QString& name = "a.jpg")
    {
        press(ToolBar::Open);
        answer(write(name, bytes));
    }
    /// Loads a movie of so many pictures, by no dialog.
    void loadMovie(int frames)
    {
        cam.LoadMovie(write("m.pvm", movieOf(frames)));
        QTRY_VERIFY(!isWorking());
    }
    /// Begins to load one and lets `frames` of them come; the next waits for the timer given back.
    Timer& loadSlowly(int all, int frames)
    {
        cam.LoadMovie(write("m.pvm", movieOf(all)));
        auto& next = timer("tmrMovie");
        next.setInterval(600'000);
        // Opened and scanned before the first.
        for (int i = 0; i < 2 + frames; ++i)
            next.elapse();
        return next;
    }
    void saveMovie(const QString& name)
    {
        chooseFromMenu(ToolBar::Save, 2);
        answer(path(name));
    }
    /// Fetches a picture from the server.
    void fetchPicture(int number)
    {
        server.play(pictureAnswer(numbered(number)));
        fetch(server.url());
    }
    void openMovie(const QString& file)
    {
        chooseFromMenu(ToolBar::Open, 2);
        answer(file);
    }
    bool isWorking() { return cam.findChild<Timer*>("tmrMovie") != nullptr; }
    /// As it is a second after each fetch.
    void hideStatus()
    {
        timer("tmrFalse").setEnabled(true);
        timer("tmrFalse").elapse();
    }
    bool statusIsShown() { return part<QWidget>("lbl").isVisible(); }
    /// Begins to save a movie and lets `steps` frames pass; the next waits for its timer.
    void saveSlowly(const QString& name, int steps)
    {
        chooseFromMenu(ToolBar::Save, 2);
        acceptFile(path(name));
        auto& next = timer("tmrMovie");
        next.setInterval(600'000);
        for (int i = 0; i < steps; ++i)
            next.elapse();
    }
    /// The numbers of the pictures that a movie file holds, in order.
    QList<int> framesOf(const QString& name)
    {
        QList<int> numbers;
        const QByteArray movie = read(name);
        qsizetype from = 0;
        for (qsizetype end = 0; end < movie.size(); from = end + 7) {
            end = movie.indexOf("&IMAGE&", from);
            end = end < 0 ? movie.size() : end;
            numbers << Still::fromBytes(movie.mid(from, end - from)).size().width() - 8;
        }
        return numbers;
    }
    QSize size() { return part<ImageView>("imgMain").Picture().size(); }

    ScriptedServer server;

private:
    QTemporaryDir m_files;
};
