// Linked into the whole program: lets it change and save its list, its favourites, images and
// movies, then close its window, and has the system kill it somewhere on that way. Started by
// bench-kills with the environment
//   PEVORA_VICTIM="MOMENT NS RUN FIRST LAST FOLDER"
// It is killed NS nanoseconds after MOMENT, "work" or "exit", has begun; where that is "never", it
// is not. RUN marks the favourites that it leaves. FIRST and LAST are the numbers of the cameras in
// its list, and FOLDER has the pictures that it opens and what it saves. It prints "work" and
// "exit" when that begins.

#include "Victim.h"
#include "Visitor.h"

#include "camlist/CamList.h"
#include "camlist/Favourites.h"
#include "shell/frmMain.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringList>

#include <csignal>
#include <cstdio>
#include <ctime>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Steps = 12;
constexpr int StepsForMovie = 4;

/// Lets the system kill this process after so many nanoseconds.
void killLater(qint64 ns)
{
    constexpr qint64 second = 1'000'000'000;
    sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    timer_t timer = {};
    itimerspec time = {};
    time.it_value = {time_t(ns / second), long(ns % second)};
    if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0 ||
        timer_settime(timer, 0, &time, nullptr) != 0)
        qFatal("bench: no timer");
}

class AtWork : public Visitor
{
protected:
    void begin() override;

private:
    void reach(const QString& moment) const;
    void step();
    void goOn();
    void changeList();
    void changeFavourites();
    void saveImage();
    void saveMovie();
    void leave();

    QStringList m_words;
    QString m_folder;
    int m_first = 0;
    int m_last = 0;
    int m_step = 0;
    bool m_waits = false;
};

void AtWork::begin()
{
    m_words = qEnvironmentVariable("PEVORA_VICTIM").split(u' ');
    m_first = m_words.value(3).toInt();
    m_last = m_words.value(4).toInt();
    m_folder = m_words.value(5);
    // What the last one left is what this one has read.
    const auto* list = window().findChild<CamList*>();
    if (!list->has(victim::keyOf(m_first)) || !list->has(victim::keyOf(m_last)))
        qFatal("bench: the list was not read");
    reach(u"work"_s);
    for (int i = 0; i < victim::Pictures; ++i)
        cam().openPicture(QDir(m_folder).filePath(victim::sourceName(i)));
    connect(&cam(), &WebCam::Idle, this, &AtWork::goOn, Qt::QueuedConnection);
    connect(&cam(), &WebCam::NotSaved, this, [](const QString& path, const QString& reason) {
        qFatal("bench: %s was not saved: %s", qPrintable(path), qPrintable(reason));
    });
    step();
}

/// Also tells bench-kills.
void AtWork::reach(const QString& moment) const
{
    std::puts(qPrintable(moment));
    std::fflush(stdout);
    if (m_words.value(0) == moment)
        killLater(m_words.value(1).toLongLong());
}

void AtWork::step()
{
    if (m_step == Steps) {
        leave();
        return;
    }
    changeList();
    changeFavourites();
    press(ToolBar::Back);
    saveImage();
    if (++m_step % StepsForMovie == 0)
        saveMovie();
    m_waits = true;
    QMetaObject::invokeMethod(
        this, [this] { goOn(); }, Qt::QueuedConnection);
}

/// With the next step, when no movie is saved any more.
void AtWork::goOn()
{
    if (!m_waits || cam().isBusy())
        return;
    m_waits = false;
    step();
}

/// One camera less at the beginning, where that was not the last thing before a kill, and one more
/// at the end.
void AtWork::changeList()
{
    auto* list = window().findChild<CamList*>();
    if (m_last - m_first + 1 == victim::Cameras) {
        list->select(victim::keyOf(m_first));
        list->Remove();
        ++m_first;
        list->SaveFile();
    }
    ++m_last;
    if (!list->AddCam(victim::nameOf(m_last), victim::keyOf(m_last), victim::category()))
        qFatal("bench: no camera was added");
    list->SaveFile();
}

void AtWork::changeFavourites()
{
    QList<Favourite> all;
    for (int i = 0; i < victim::Favourites; ++i)
        all.append({u"Favourite %1"_s.arg(i), victim::favouriteKey(m_words.value(2))});
    window().findChild<Favourites*>()->replaceAll(all);
}

void AtWork::saveImage()
{
    press(ToolBar::Save, 1);
    answer(
        QDir(m_folder).filePath(victim::savedImages().at(m_step % victim::savedImages().size())));
}

void AtWork::saveMovie()
{
    press(ToolBar::Save, 2);
    answer(QDir(m_folder).filePath(victim::savedMovie()));
}

/// Every second time a movie is on its way.
void AtWork::leave()
{
    if (m_words.value(2).toInt() % 2)
        saveMovie();
    reach(u"exit"_s);
    window().close();
}

void startWork()
{
    new AtWork;
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(startWork)
