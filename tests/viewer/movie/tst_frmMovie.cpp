// The progress window of movies.
#include "viewer/movie/frmMovie.h"

#include "support/Closing.h"
#include "support/Desktop.h"
#include "widgets/Topmost.h"

#include <QProgressBar>

namespace {

bool isAbove(const QWidget& upper, const QWidget& lower)
{
    const QList<WId> windows = stacking();
    const auto place = [&](const QWidget& one) {
        return windows.indexOf(one.windowHandle()->winId());
    };
    return place(lower) >= 0 && place(upper) > place(lower);
}

/// The window on the screen.
struct ShownMovie : frmMovie
{
    explicit ShownMovie(QWidget* parent = nullptr)
        : frmMovie(parent)
    {
        show();
        QVERIFY(waitForExposed(this));
    }
};

/// Counts its paintings.
class Paintings : public QObject
{
public:
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

} // namespace

class frmMovieTest : public QObject
{
    Q_OBJECT
private slots:
    void itBeginsWithItsCaptionAndAnEmptyBar()
    {
        const frmMovie window;
        QCOMPARE(window.windowTitle(), "Saving Movie");
        QCOMPARE(window.findChildren<QProgressBar*>("pBar"),
                 QList<QProgressBar*>({const_cast<QProgressBar*>(&window.pBar())}));
        QCOMPARE(window.pBar().value(), 0);
        QCOMPARE(window.pBar().text(), "0%");
        QVERIFY(!window.isVisible());
    }

    void whatItIsToldIsOnScreenAtOnce()
    {
        ShownMovie window;
        Paintings paintings;
        const_cast<QProgressBar&>(window.pBar()).installEventFilter(&paintings);
        // No event runs in between.
        window.setMaximum(1000);
        QCOMPARE(window.pBar().maximum(), 1000);
        QVERIFY(paintings.count > 0);
        for (int value = 1; value <= 3; ++value) {
            paintings.count = 0;
            window.setValue(value);
            QCOMPARE(window.pBar().value(), value);
            QVERIFY(paintings.count > 0);
        }
    }

    void aMaximumOfNothingIsNone()
    {
        frmMovie window;
        window.setMaximum(7);
        window.setMaximum(0);
        window.setMaximum(-3);
        QCOMPARE(window.pBar().maximum(), 7);
        QCOMPARE(window.pBar().minimum(), 0);
        window.setValue(5);
        window.setValue(8);
        QCOMPARE(window.pBar().value(), 5);
    }

    void itComesToTheTopEachTimeItIsActivated()
    {
        frmMovie window;
        QVERIFY(!window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        window.show();
        QVERIFY(waitForActive(&window));
        QTRY_VERIFY(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));

        // Above a common window that is raised, and above another one that stays on top.
        for (const bool topmost : {false, true}) {
            QWidget other;
            other.setGeometry(window.geometry().adjusted(-50, -50, 50, 50));
            setTopmost(other, topmost);
            other.show();
            other.activateWindow();
            QVERIFY(waitForActive(&other));
            other.raise();
            QTRY_COMPARE(isAbove(other, window), topmost);
            // Activated without being raised, as by the keyboard.
            QApplication::setActiveWindow(&window);
            QTRY_VERIFY(isAbove(window, other));
        }
    }

    void closingItAsksItsOwnerAndHidesIt()
    {
        ShownMovie window;
        QSignalSpy asked(&window, &frmMovie::CloseRequested);
        QVERIFY(window.close());
        QCOMPARE(asked.count(), 1);
        QVERIFY(!window.isVisible());
    }

    void closingItDoesNotEndTheProgram()
    {
        // The last window that is closed ends the program, with code 0, but this one never does.
        frmMovie window;
        QCOMPARE(codeAfterClosing(window), StillRuns);
        QWidget other;
        QCOMPARE(codeAfterClosing(other), 0);
    }

    void hidingItAsksNobody()
    {
        ShownMovie window;
        QSignalSpy asked(&window, &frmMovie::CloseRequested);
        window.hide();
        QCoreApplication::processEvents();
        QCOMPARE(asked.count(), 0);
    }

    void itIsNotModalAndKeepsItsSize()
    {
        QWidget parent;
        parent.show();
        ShownMovie window(&parent);
        QVERIFY(window.isWindow());
        QVERIFY(!window.isModal());
        QCOMPARE(window.minimumSize(), window.maximumSize());
        const QSize size = window.size();
        window.setWindowTitle("Saving Image 45");
        window.setMaximum(47);
        window.setValue(45);
        QCoreApplication::processEvents();
        QCOMPARE(window.size(), size);
    }

    void allOfTheBarAndItsTextIsSeen()
    {
        ShownMovie window;
        window.setMaximum(1);
        window.setValue(1);
        const QProgressBar& bar = window.pBar();
        QVERIFY(window.rect().contains(bar.geometry()));
        QVERIFY(bar.width() >= 280);
        QVERIFY(bar.height() >= bar.sizeHint().height());
        QVERIFY(bar.fontMetrics().height() <= bar.height());
        QVERIFY(bar.fontMetrics().horizontalAdvance(bar.text()) < bar.width());
    }

    void aScreenReaderFindsItsBar()
    {
        const frmMovie window;
        QCOMPARE(window.pBar().accessibleName(), "Movie progress");
    }
};

QTEST_MAIN(frmMovieTest)
#include "tst_frmMovie.moc"
