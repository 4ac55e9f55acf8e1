// What the strip holds, and where it stands.

#include "support/ShownStrip.h"

#include <QScrollBar>

#include <algorithm>

static QStringList freshPlaces(QSize size, int count)
{
    ShownStrip strip(size);
    strip.add(1, count);
    return strip.places();
}

class ThumbViewTest : public QObject
{
    Q_OBJECT
private slots:
    void startsEmptyWithItsFirstPlaceHidden()
    {
        ShownStrip strip({200, 300});
        QCOMPARE(strip.view.ThumbCount(), 0);
        QCOMPARE(strip.img(0).geometry(), QRect(0, 8, 80, 60));
        QVERIFY(strip.img(0).isHidden());
        QVERIFY(strip.lbl(0).isHidden());
        QVERIFY(!strip.has(1));
        QVERIFY(strip.view.Picture(1).isNull());
        QCOMPARE(strip.bar().maximum(), 0);
    }

    void theFirstPictureMovesNothing()
    {
        ShownStrip strip({200, 300});
        const QRect panel = strip.panel().geometry();
        strip.add(7, 7);
        QCOMPARE(strip.places(), QStringList{"0,8 Image 1"});
        QCOMPARE(strip.panel().geometry(), panel);
        QCOMPARE(strip.img(0).cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(strip.view.ThumbCount(), 1);
        QCOMPARE(numberOf(strip.view.Picture(1)), 7);
        for (int outside : {-1, 0, 2, 32767})
            QVERIFY(strip.view.Picture(outside).isNull());
    }

    void placesRowByRow()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 5);
        const QStringList expected{"0,8 Image 1", "90,8 Image 2", "0,88 Image 3", "90,88 Image 4",
                                   "0,168 Image 5"};
        QCOMPARE(strip.places(), expected);
        for (int i = 0; i < 5; ++i)
            QCOMPARE(strip.img(i).cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(strip.numbers(), (QList<int>{1, 2, 3, 4, 5}));
    }

    void aThumbnailThatJustFitsStaysInItsRow()
    {
        // Behind the first one there have to be two widths, and the bar's.
        QCOMPARE(freshPlaces({160 + ShownStrip::BarWidth, 300}, 2).last(), "90,8 Image 2");
        QCOMPARE(freshPlaces({159 + ShownStrip::BarWidth, 300}, 2).last(), "0,88 Image 2");
    }

    void aNarrowControlHasOneColumn()
    {
        QCOMPARE(freshPlaces({50, 300}, 3),
                 (QStringList{"0,8 Image 1", "0,88 Image 2", "0,168 Image 3"}));
    }

    void panelAndBarFollowThePlacement()
    {
        ShownStrip strip({200, 100});
        strip.add(1, 2);
        QCOMPARE(strip.panel().size(), QSize(200, 88));
        QCOMPARE(strip.bar().maximum(), 0);
        strip.add(3, 3);
        QCOMPARE(strip.panel().size(), QSize(200, 168));
        QCOMPARE(strip.bar().maximum(), 68);
    }

    void aPanelThatFitsLeavesTheBarsMaximum()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 4);
        QCOMPARE(strip.bar().maximum(), 0);
        strip.view.resize(200, 100);
        QCOMPARE(strip.bar().maximum(), 68);
        strip.view.resize(200, 400);
        QCOMPARE(strip.bar().maximum(), 68);
        strip.add(5, 5);
        QCOMPARE(strip.bar().maximum(), 68);
        strip.view.Clear();
        QCOMPARE(strip.bar().maximum(), 0);
        strip.add(1, 4);
        QCOMPARE(strip.bar().maximum(), 0);
    }

    void aHiddenStripIsPlacedByItsSizeToo()
    {
        ThumbView view;
        view.findChild<QScrollBar*>("vs")->setFixedWidth(ShownStrip::BarWidth);
        view.resize(300, 200);
        for (int n = 1; n <= 4; ++n)
            view.AddImage(numberedStill(n));
        QCOMPARE(view.findChild<QWidget*>("img(2)")->pos(), QPoint(180, 8));
        QCOMPARE(view.findChild<QWidget*>("img(3)")->pos(), QPoint(0, 88));
        view.resize(200, 200);
        view.RemImage(1);
        view.ShowImages(numberedList(1, 3));
        QCOMPARE(view.findChild<QWidget*>("img(2)")->pos(), QPoint(0, 88));
    }

    void resizePlacesAllAnew()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 7);
        for (int width : {300, 120, 640, 200, 347, 348}) {
            strip.view.resize(width, 300);
            QCOMPARE(strip.places(), freshPlaces({width, 300}, 7));
            QCOMPARE(strip.panel().width(), width);
            QCOMPARE(strip.panel().height(), strip.img(6).y() + 80);
        }
        QCOMPARE(strip.numbers(), (QList<int>{1, 2, 3, 4, 5, 6, 7}));
        // What comes next stands behind the last.
        strip.add(8, 8);
        QCOMPARE(strip.places(), freshPlaces({348, 300}, 8));
    }

    void resizeKeepsTheBarAtTheRightEdge()
    {
        ShownStrip strip({200, 300});
        for (const QSize size : {QSize(200, 300), QSize(511, 77), QSize(300, 400)}) {
            strip.view.resize(size);
            QCOMPARE(strip.bar().geometry(), QRect(size.width() - 17, 0, 17, size.height()));
            QCOMPARE(strip.bar().pageStep(), std::max(size.height(), 80));
        }
    }

    void aWiderBarPlacesAllAnew()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 3);
        strip.bar().setFixedWidth(60);
        QEvent change(QEvent::StyleChange);
        QCoreApplication::sendEvent(&strip.view, &change);
        QCOMPARE(strip.bar().geometry(), QRect(140, 0, 60, 300));
        QCOMPARE(strip.places(), (QStringList{"0,8 Image 1", "0,88 Image 2", "0,168 Image 3"}));
    }

    void removingMovesPicturesAndKeepsCaptions()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 3);
        strip.view.RemImage(1);
        QCOMPARE(strip.numbers(), (QList<int>{2, 3}));
        QCOMPARE(strip.places(), (QStringList{"0,8 Image 1", "90,8 Image 2"}));
        QVERIFY(!strip.has(2));
        strip.add(4, 5);
        strip.view.RemImage(3);
        QCOMPARE(strip.numbers(), (QList<int>{2, 3, 5}));
        QCOMPARE(strip.places(), (QStringList{"0,8 Image 1", "90,8 Image 2", "0,88 Image 3"}));
    }

    void removingTheOnlyOneHidesIt()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 1);
        strip.view.RemImage(1);
        QCOMPARE(strip.view.ThumbCount(), 0);
        QVERIFY(strip.img(0).isHidden());
        QVERIFY(strip.lbl(0).isHidden());
        QVERIFY(strip.view.Picture(1).isNull());
        QVERIFY(!strip.img(0).isRendered());
    }

    void removingPastTheLastRemovesTheLast()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 3);
        strip.view.RemImage(17);
        QCOMPARE(strip.numbers(), (QList<int>{1, 2}));
        strip.view.RemImage(3);
        QCOMPARE(strip.numbers(), (QList<int>{1}));
        strip.view.RemImage(32767);
        QCOMPARE(strip.view.ThumbCount(), 0);
        QVERIFY(strip.img(0).isHidden());
    }

    void removingFromNothingOrBelowOneIsIgnored()
    {
        ShownStrip strip({200, 300});
        for (int n : {-1, 0, 1, 2})
            strip.view.RemImage(n);
        QCOMPARE(strip.view.ThumbCount(), 0);
        strip.add(1, 3);
        QCOMPARE(strip.places(), freshPlaces({200, 300}, 3));
        strip.view.RemImage(0);
        strip.view.RemImage(-32768);
        QCOMPARE(strip.numbers(), (QList<int>{1, 2, 3}));
    }

    void removingLeavesPanelAndBar()
    {
        ShownStrip strip({200, 100});
        strip.add(1, 5);
        strip.view.RemImage(5);
        QCOMPARE(strip.panel().height(), 248);
        QCOMPARE(strip.bar().maximum(), 148);
        strip.add(6, 6);
        QCOMPARE(strip.panel().height(), 248);
        strip.view.RemImage(5);
        strip.view.RemImage(4);
        strip.add(7, 7);
        QCOMPARE(strip.panel().height(), 168);
        QCOMPARE(strip.bar().maximum(), 68);
    }

    void severalRemovalsLeaveNoHole_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("removals");
        for (int width : {50, 200, 300}) {
            for (int removals = 1; removals <= 8; ++removals)
                QTest::addRow("%d wide, %d removals", width, removals) << width << removals;
        }
    }

    void severalRemovalsLeaveNoHole()
    {
        QFETCH(int, width);
        QFETCH(int, removals);
        ShownStrip strip({width, 300});
        strip.add(1, 7);
        for (int i = 0; i < removals; ++i)
            strip.view.RemImage(1);
        const int left = std::max(7 - removals, 0);
        QCOMPARE(strip.view.ThumbCount(), left);
        strip.add(1, 4);
        QCOMPARE(strip.view.ThumbCount(), left + 4);
        QCOMPARE(strip.places(), freshPlaces({width, 300}, left + 4));
    }

    void clearEmptiesAndStartsAgain()
    {
        ShownStrip strip({200, 100});
        strip.add(1, 6);
        strip.view.Clear();
        QCOMPARE(strip.view.ThumbCount(), 0);
        QCOMPARE(strip.places(), QStringList());
        QVERIFY(!strip.has(1));
        strip.add(11, 13);
        QCOMPARE(strip.places(), freshPlaces({200, 100}, 3));
        QCOMPARE(strip.numbers(), (QList<int>{11, 12, 13}));
        QCOMPARE(strip.bar().maximum(), 68);
    }

    void clearScrollsToTheTop()
    {
        ShownStrip strip({200, 100});
        strip.add(1, 6);
        strip.bar().setValue(50);
        QCOMPARE(strip.panel().y(), -50);
        strip.view.Clear();
        QCOMPARE(strip.bar().value(), 0);
        QCOMPARE(strip.panel().y(), 0);
    }

    void clearKeepsThePanelsHeight()
    {
        ShownStrip strip({200, 100});
        strip.add(1, 6);
        strip.view.Clear();
        QCOMPARE(strip.panel().height(), 248);
        strip.add(1, 1);
        QCOMPARE(strip.panel().height(), 248);
        strip.add(2, 2);
        QCOMPARE(strip.panel().height(), 88);
    }

    void clearKeepsTheFirstPicture()
    {
        ShownStrip strip({200, 100});
        strip.add(5, 6);
        strip.view.Clear();
        QCOMPARE(numberOf(strip.view.Picture(1)), 5);
        QVERIFY(strip.view.Picture(2).isNull());
    }

    void showImagesRebuilds_data()
    {
        QTest::addColumn<int>("before");
        QTest::addColumn<int>("after");
        for (int before : {0, 1, 2, 5, 9}) {
            for (int after : {0, 1, 2, 4, 5, 8})
                QTest::addRow("%d, then %d", before, after) << before << after;
        }
    }

    void showImagesRebuilds()
    {
        QFETCH(int, before);
        QFETCH(int, after);
        QList<int> numbers;
        for (int n = 101; n <= 100 + after; ++n)
            numbers.append(n);
        enum { ByDefault, Reset, InPlace };
        for (const int way : {ByDefault, Reset, InPlace}) {
            ShownStrip strip({300, 100});
            strip.add(1, before);
            const ImageList list = numberedList(101, 100 + after);
            if (way == ByDefault)
                strip.view.ShowImages(list);
            else
                strip.view.ShowImages(list, way == Reset);
            QCOMPARE(strip.view.ThumbCount(), after);
            QCOMPARE(strip.numbers(), numbers);
            QCOMPARE(strip.places(), freshPlaces({300, 100}, after));
            QVERIFY(!strip.has(std::max(after, 1)));
            const int rows = std::max((after + 2) / 3, 1);
            QCOMPARE(strip.panel().height(), 8 + rows * 80);
            strip.add(1, 2);
            QCOMPARE(strip.places(), freshPlaces({300, 100}, after + 2));
        }
    }

    void showImagesWithoutResetStaysWhereItIs()
    {
        ShownStrip strip({200, 100});
        strip.add(1, 20);
        strip.bar().setValue(300);
        strip.view.ShowImages(numberedList(1, 18), false);
        QCOMPARE(strip.bar().value(), 300);
        QCOMPARE(strip.panel().y(), -300);
        strip.view.ShowImages(numberedList(1, 18), true);
        QCOMPARE(strip.bar().value(), 0);
        QCOMPARE(strip.panel().y(), 0);
    }

    void noMoreThumbnailsThanSixteenBitsCount()
    {
        ShownStrip strip({990, 300});
        const Still picture = numberedStill(3);
        ImageList list;
        for (int n = 1; n <= 32768; ++n)
            list.Add(picture);
        strip.view.hide();
        strip.view.ShowImages(list);
        QCOMPARE(strip.view.ThumbCount(), 32767);
        strip.view.AddImage(picture);
        QCOMPARE(strip.view.ThumbCount(), 32767);
        QVERIFY(strip.has(32766));
        QVERIFY(!strip.has(32767));
        QCOMPARE(strip.lbl(32766).text(), "Image 32767");
        strip.view.RemImage(1);
        strip.view.AddImage(picture);
        QCOMPARE(strip.view.ThumbCount(), 32767);
        // With events of each still pending, their end would take long.
        QCoreApplication::processEvents();
    }
};

QTEST_MAIN(ThumbViewTest)
#include "tst_ThumbView.moc"
