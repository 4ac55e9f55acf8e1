// Linked into the whole program: lets it fetch one camera again and again, and use what it fetched
// in every way, a hundred fetches a round. After the first round it counts what the process
// holds, and again after the last, when the program does just the same: more is a leak. Started by
// bench/soak and bench/valgrind with the environment
//   PEVORA_SOAK="FETCHES ADDRESS FOLDER"    a multiple of 100, the camera's address without its
//                                           scheme, and an empty folder for what is saved
// The last line that it prints is "Held." or "Not held."; then it closes the window.

#include "Resources.h"
#include "Visitor.h"

#include "shared/Timer.h"
#include "shell/frmMain.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

#include <cstdio>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Round = 100;
constexpr int SavedEachRound = 4;
constexpr int Report = 1000;
constexpr qint64 MostGrowthKilobytes = 5'000'000 / 1024;
/// Against a program that hangs.
constexpr int HangMs = 120'000;

class Soak : public Visitor
{
protected:
    void begin() override;

private:
    struct Step
    {
        int at; ///< after so many fetches of a round
        void (Soak::*act)();
    };
    static const QList<Step>& steps();

    void saveImage(const char* name);
    void fetched(const FetchOutcome& outcome);
    void use();
    void goOn();
    bool endRound();
    bool held(const Resources& last) const;
    void print(const Resources& what) const;
    QString movie() const { return QDir(m_folder).filePath(u"a.pvm"_s); }

    void wheelIn() { wheel(3); }
    void wheelOut() { wheel(-3); }
    void stepBack() { press(ToolBar::Back); }
    void stepForward() { press(ToolBar::Forward); }
    void toggleStrip() { press(ToolBar::ToggleView); }
    void zoomIn() { zoom(); }
    void zoomOut() { restore(); }
    void saveBitmap() { saveImage("a.bmp"); }
    void saveGif() { saveImage("a.gif"); }
    void saveJpeg() { saveImage("a.jpg"); }
    void toggleOriginalSize() { check("mnuViewOSize"); }
    void toggleProportions() { check("mnuViewProp"); }
    void toggleList() { check("mnuViewList"); }
    void toggleFullScreen() { check("mnuViewFull"); }
    void smaller() { window().resize(m_size - QSize(100, 80)); }
    void larger() { window().resize(m_size); }
    void toggleTimer() { press(ToolBar::Timer); }
    void saveMovie();
    void loadMovie();
    void play();
    void deleteCurrent() { press(ToolBar::Delete, 1); }
    void deleteAll() { press(ToolBar::Delete, 2); }

    int m_fetches = 0;
    int m_done = 0;
    int m_pictures = 0;
    int m_saved = 0;
    int m_notSaved = 0;
    bool m_due = false;
    QString m_folder;
    QSize m_size;
    QTimer m_hangs;
    std::optional<Resources> m_first;
};

/// The last fifty fetches of a round fill the history again.
const QList<Soak::Step>& Soak::steps()
{
    static const QList<Step> table = {
        {2, &Soak::wheelIn},
        {4, &Soak::wheelOut},
        {6, &Soak::zoomIn},
        {8, &Soak::zoomIn},
        {10, &Soak::zoomOut},
        {12, &Soak::stepBack},
        {14, &Soak::stepForward},
        {16, &Soak::saveBitmap},
        {17, &Soak::saveGif},
        {18, &Soak::saveJpeg},
        {20, &Soak::toggleStrip},
        {25, &Soak::toggleStrip},
        {28, &Soak::saveMovie},
        {30, &Soak::loadMovie},
        {32, &Soak::play},
        {34, &Soak::toggleOriginalSize},
        {36, &Soak::toggleOriginalSize},
        {38, &Soak::toggleProportions},
        {40, &Soak::smaller},
        {41, &Soak::larger},
        {42, &Soak::toggleProportions},
        {43, &Soak::toggleList},
        {44, &Soak::toggleList},
        {45, &Soak::toggleFullScreen},
        {46, &Soak::toggleFullScreen},
        {48, &Soak::deleteCurrent},
        {50, &Soak::deleteAll},
        {60, &Soak::toggleStrip},
        {70, &Soak::toggleStrip},
        {72, &Soak::stepBack},
        {96, &Soak::toggleStrip},
        {98, &Soak::toggleStrip},
    };
    return table;
}

void Soak::begin()
{
    const QStringList words = qEnvironmentVariable("PEVORA_SOAK").split(u' ');
    m_fetches = words.value(0).toInt();
    m_folder = words.value(2);
    if (m_fetches < Round || m_fetches % Round || !QDir(m_folder).exists())
        qFatal("bench: PEVORA_SOAK=\"FETCHES ADDRESS FOLDER\", a multiple of %d", Round);
    m_size = window().size();
    m_hangs.setInterval(HangMs);
    connect(&m_hangs, &QTimer::timeout, [this] { qFatal("bench: hangs after %d", m_done); });
    m_hangs.start();

    connect(&cam(), &WebCam::Outcome, this, &Soak::fetched);
    connect(&cam(), &WebCam::Idle, this, &Soak::goOn, Qt::QueuedConnection);
    connect(&cam(), &WebCam::Saved, this, [this] { ++m_saved; });
    connect(&cam(), &WebCam::NotSaved, this, [this] { ++m_notSaved; });
    cam().setUrl(words.value(1));
    cam().setInterval(1);
    toggleTimer();
    m_due = true;
    goOn();
}

void Soak::fetched(const FetchOutcome& outcome)
{
    m_hangs.start();
    ++m_done;
    m_pictures += outcome.kind == FetchOutcome::Kind::NewPicture;
    QMetaObject::invokeMethod(
        this, [this] { use(); }, Qt::QueuedConnection);
}

void Soak::use()
{
    m_due = true;
    if (m_done % Round == 0 && !endRound())
        return;
    for (const Step& step : steps()) {
        if (step.at == m_done % Round)
            (this->*step.act)();
    }
    goOn();
}

/// Once for each fetch: as soon as nothing runs that takes long, its interval is over.
void Soak::goOn()
{
    if (!m_due || cam().isBusy())
        return;
    m_due = false;
    timer("tmrRe").elapse();
}

/// False where it was the last one.
bool Soak::endRound()
{
    const Resources now = Resources::now();
    if (!m_first)
        m_first = now;
    if (m_done == Round || m_done % Report == 0 || m_done == m_fetches)
        print(now);
    if (m_done < m_fetches)
        return true;
    m_hangs.stop();
    std::printf("%d pictures, %d files saved, %d not saved; resident when trimmed: %lld kB\n",
                m_pictures, m_saved, m_notSaved, Resources::residentAfterTrimming());
    std::puts(held(now) ? "Held." : "Not held.");
    std::fflush(stdout);
    window().close();
    return false;
}

bool Soak::held(const Resources& last) const
{
    bool good =
        m_pictures == m_fetches && m_notSaved == 0 && m_saved == m_fetches / Round * SavedEachRound;
    good &= last.residentKilobytes - m_first->residentKilobytes < MostGrowthKilobytes;
    good &= last.descriptors <= m_first->descriptors;
    good &= last.pixmapBytes <= m_first->pixmapBytes;
    for (auto kind = last.onServer.cbegin(); kind != last.onServer.cend(); ++kind)
        good &= kind.value() <= m_first->onServer.value(kind.key());
    return good;
}

void Soak::print(const Resources& what) const
{
    std::printf("%6d fetches: resident %lld kB, heap %lld kB, %d descriptors, pixmaps %llu kB;",
                m_done, what.residentKilobytes, what.heapKilobytes, what.descriptors,
                what.pixmapBytes / 1000);
    for (auto kind = what.onServer.cbegin(); kind != what.onServer.cend(); ++kind)
        std::printf(" %u %s", kind.value(), kind.key().constData());
    std::puts("");
    std::fflush(stdout);
}

void Soak::saveImage(const char* name)
{
    press(ToolBar::Save, 1);
    answer(QDir(m_folder).filePath(QString::fromLatin1(name)));
}

void Soak::saveMovie()
{
    press(ToolBar::Save, 2);
    answer(movie());
}

void Soak::loadMovie()
{
    press(ToolBar::Open, 2);
    answer(movie());
}

void Soak::play()
{
    constexpr int someFramesMs = 450;
    press(ToolBar::PlayMovie, 1);
    QTimer::singleShot(someFramesMs, this, [this] { press(ToolBar::StopMovie); });
}

void startSoak()
{
    new Soak;
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(startSoak)
