// The strip under mouse, wheel, keyboard and screen reader.

#include "support/Rows.h"
#include "support/ShownStrip.h"

#include <QAccessible>

#include <utility>

/// As the window system does: what the part under the mouse does not want goes to its parent.
static void turnWheel(QWidget& over, QPoint angle, QPoint pixels = {},
                      Qt::ScrollPhase phase = Qt::NoScrollPhase)
{
    const QPointF at(over.rect().center());
    QWheelEvent event(at, over.mapToGlobal(at), pixels, angle, Qt::NoButton, Qt::NoModifier, phase,
                      false);
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(&over, &event);
}

/// The array index of the thumbnail that has the focus; -1 for none.
static int focused(ShownStrip& strip)
{
    for (int i = 0; strip.has(i); ++i) {
        if (strip.img(i).hasFocus())
            return i;
    }
    return -1;
}

static void press(int key)
{
    QTest::keyClick(QApplication::focusWidget(), Qt::Key(key));
}

/// A strip between two other controls.
class BetweenOthers : public ShownStrip
{
public:
    BetweenOthers()
        : ShownStrip({200, 300})
    {
        QWidget::setTabOrder(&before, &view);
        QWidget::setTabOrder(&view, &after);
        before.show();
        after.show();
        before.setFocus();
    }
    QLineEdit before{&window};
    QLineEdit after{&window};
};

class ThumbViewUseTest : public QObject
{
    Q_OBJECT
private slots:
    void aClickTellsTheNumber()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 4);
        QSignalSpy clicks(&strip.view, &ThumbView::Click);
        for (int i : {2, 0, 3}) {
            QTest::mouseClick(&strip.img(i), Qt::LeftButton);
            QCOMPARE(clicks.size(), 1);
            QCOMPARE(clicks.takeFirst().first().toInt(), i + 1);
        }
    }

    void onlyTheLeftButtonOnAThumbnailClicks()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 2);
        QSignalSpy clicks(&strip.view, &ThumbView::Click);
        QTest::mouseClick(&strip.img(0), Qt::RightButton);
        QTest::mouseClick(&strip.img(0), Qt::MiddleButton);
        QTest::mouseClick(&strip.lbl(0), Qt::LeftButton);
        QTest::mouseClick(&strip.panel(), Qt::LeftButton, {}, QPoint(85, 30));
        QTest::mousePress(&strip.img(0), Qt::LeftButton);
        QTest::mouseRelease(&strip.img(0), Qt::LeftButton, {}, QPoint(100, 30));
        QCOMPARE(clicks.size(), 0);
        QTest::mouseClick(&strip.img(0), Qt::LeftButton);
        QCOMPARE(clicks.size(), 1);
    }

    void theOwnerMayEmptyTheStripOnAClick()
    {
        ShownStrip strip({200, 300});
        QSignalSpy clicks(&strip.view, &ThumbView::Click);
        connect(&strip.view, &ThumbView::Click, &strip.view, &ThumbView::Clear);
        strip.add(1, 5);
        QTest::mouseClick(&strip.img(4), Qt::LeftButton);
        QCOMPARE(strip.view.ThumbCount(), 0);
        for (int key : {Qt::Key_Return, Qt::Key_Space}) {
            strip.add(1, 5);
            strip.view.setFocus();
            press(Qt::Key_End);
            press(key);
            QCOMPARE(strip.view.ThumbCount(), 0);
        }
        QCOMPARE(clicks.size(), 3);
    }

    void theBarMovesThePanel()
    {
        ShownStrip strip({200, 100});
        strip.add(1, 10);
        QCOMPARE(strip.bar().maximum(), 308);
        for (int value : {1, 120, 308, 0}) {
            strip.bar().setValue(value);
            QCOMPARE(strip.panel().pos(), QPoint(0, -value));
        }
        QTest::mouseClick(&strip.bar(), Qt::LeftButton, {}, QPoint(8, 70));
        QVERIFY(strip.panel().y() < 0);
        QCOMPARE(strip.panel().y(), -strip.bar().value());
    }

    void theWheelScrollsOverAllParts_data()
    {
        const Rows<QString> row("part");
        for (const char* part : {"img(0)", "lbl(0)", "picBack", "vs"})
            row(part, QString(part));
    }

    void theWheelScrollsOverAllParts()
    {
        QFETCH(QString, part);
        ShownStrip strip({200, 100});
        strip.add(1, 10);
        auto* over = strip.view.findChild<QWidget*>(part);
        QVERIFY(over);
        const int notch = 20 * QApplication::wheelScrollLines();
        turnWheel(*over, {0, -120});
        QCOMPARE(strip.panel().y(), -notch);
        turnWheel(*over, {0, -120});
        QCOMPARE(strip.panel().y(), -2 * notch);
        turnWheel(*over, {0, 120});
        QCOMPARE(strip.panel().y(), -notch);
        turnWheel(*over, {0, 1200});
        QCOMPARE(strip.panel().y(), 0);
    }

    void fineWheelStepsAddUp()
    {
        ShownStrip strip({200, 100});
        strip.add(1, 10);
        for (int i = 0; i < 24; ++i)
            turnWheel(strip.img(0), {0, -5});
        QCOMPARE(strip.panel().y(), -20 * QApplication::wheelScrollLines());
    }

    void gesturesScrollByThePixel()
    {
        ShownStrip strip({200, 100});
        strip.add(1, 10);
        turnWheel(strip.img(0), {}, {}, Qt::ScrollBegin);
        QCOMPARE(strip.panel().y(), 0);
        turnWheel(strip.img(0), {0, -90}, {0, -7}, Qt::ScrollUpdate);
        QCOMPARE(strip.panel().y(), -7);
        turnWheel(strip.img(0), {0, 40}, {0, 3}, Qt::ScrollMomentum);
        QCOMPARE(strip.panel().y(), -4);
        turnWheel(strip.img(0), {}, {}, Qt::ScrollEnd);
        QCOMPARE(strip.panel().y(), -4);
        turnWheel(strip.img(0), {}, {0, -20});
        QCOMPARE(strip.panel().y(), -24);
    }

    void wheelPixelsOfAMouseAreNotThoseOfTheScreen()
    {
        ShownStrip strip({200, 100});
        strip.add(1, 10);
        turnWheel(strip.img(0), {0, -120}, {0, -15});
        QCOMPARE(strip.panel().y(), -20 * QApplication::wheelScrollLines());
    }

    void theTabKeyStopsAtTheCurrentThumbnailAlone()
    {
        BetweenOthers strip;
        strip.add(1, 4);
        press(Qt::Key_Tab);
        QCOMPARE(focused(strip), 0);
        press(Qt::Key_Right);
        press(Qt::Key_Tab);
        QVERIFY(strip.after.hasFocus());
        press(Qt::Key_Backtab);
        QCOMPARE(focused(strip), 1);
        press(Qt::Key_Backtab);
        QVERIFY(strip.before.hasFocus());
        press(Qt::Key_Tab);
        QCOMPARE(focused(strip), 1);
        // It comes into view again.
        strip.view.resize(200, 100);
        strip.add(5, 20);
        strip.bar().setValue(300);
        press(Qt::Key_Tab);
        press(Qt::Key_Backtab);
        QVERIFY(strip.isInView(1));
    }

    void anEmptyStripIsNoTabStop()
    {
        BetweenOthers strip;
        press(Qt::Key_Tab);
        QVERIFY(strip.after.hasFocus());
        press(Qt::Key_Backtab);
        QVERIFY(strip.before.hasFocus());
        strip.add(1, 4);
        press(Qt::Key_Tab);
        press(Qt::Key_End);
        QCOMPARE(focused(strip), 3);
        strip.view.Clear();
        QVERIFY(strip.after.hasFocus());
        press(Qt::Key_Backtab);
        QVERIFY(strip.before.hasFocus());
        press(Qt::Key_Tab);
        QVERIFY(strip.after.hasFocus());
        strip.before.setFocus();
        strip.add(1, 1);
        press(Qt::Key_Tab);
        QCOMPARE(focused(strip), 0);
        strip.view.RemImage(1);
        QVERIFY(strip.after.hasFocus());
    }

    void theArrowKeysMoveTheCurrentThumbnail()
    {
        ShownStrip strip({300, 200});
        strip.add(1, 11);
        strip.view.setFocus();
        QCOMPARE(focused(strip), 0);
        // Rows of three, two of them a page.
        const std::pair<Qt::Key, int> steps[] = {
            {Qt::Key_Right, 1},    {Qt::Key_Down, 4}, {Qt::Key_Left, 3}, {Qt::Key_Up, 0},
            {Qt::Key_PageDown, 6}, {Qt::Key_End, 10}, {Qt::Key_Up, 7},   {Qt::Key_PageUp, 1},
            {Qt::Key_Up, 1},       {Qt::Key_Home, 0},
        };
        for (const auto& [key, expected] : steps) {
            press(key);
            QCOMPARE(focused(strip), expected);
            QVERIFY(strip.img(expected).hasFocusFrame());
        }
        strip.view.resize(200, 200);
        press(Qt::Key_Down);
        QCOMPARE(focused(strip), 2);
    }

    void keysScrollToTheCurrentThumbnail()
    {
        ShownStrip strip({200, 170});
        strip.add(1, 20);
        strip.view.setFocus();
        for (int key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Up,
                        Qt::Key_PageUp, Qt::Key_End, Qt::Key_Left, Qt::Key_Home}) {
            press(key);
            QVERIFY(strip.isInView(focused(strip)));
        }
        QCOMPARE(strip.bar().value(), 0);
        press(Qt::Key_End);
        QCOMPARE(strip.bar().value(), strip.bar().maximum());
        // Scrolled away, it is fetched back.
        strip.bar().setValue(0);
        press(Qt::Key_Left);
        QVERIFY(strip.isInView(18));
        // What is in view already does not move.
        strip.bar().setValue(30);
        press(Qt::Key_Home);
        QCOMPARE(strip.bar().value(), 0);
        press(Qt::Key_Down);
        QCOMPARE(strip.bar().value(), 0);
    }

    void keysChooseTheCurrentThumbnail_data()
    {
        const Rows<int> row("key");
        row("Enter", int(Qt::Key_Return));
        row("Enter of the number pad", int(Qt::Key_Enter));
        row("Space", int(Qt::Key_Space));
    }

    void keysChooseTheCurrentThumbnail()
    {
        QFETCH(int, key);
        ShownStrip strip({200, 300});
        strip.view.setFocus();
        QSignalSpy clicks(&strip.view, &ThumbView::Click);
        QTest::keyClick(&strip.view, Qt::Key(key));
        QCOMPARE(clicks.size(), 0);
        strip.add(1, 4);
        strip.view.setFocus();
        press(key);
        press(Qt::Key_Down);
        press(key);
        QCOMPARE(clicks.size(), 2);
        QCOMPARE(clicks[0].first().toInt(), 1);
        QCOMPARE(clicks[1].first().toInt(), 3);
        QVERIFY(strip.img(2).hasFocusFrame());
    }

    void otherKeysAreLeftToTheOwner()
    {
        class Owner : public QObject
        {
        public:
            bool eventFilter(QObject*, QEvent* event) override
            {
                const auto* key =
                    event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event) : nullptr;
                if (key && key->key() != Qt::Key_Alt)
                    keys.append(key->key());
                return false;
            }
            QList<int> keys;
        } owner;
        ShownStrip strip({200, 300});
        strip.add(1, 4);
        strip.view.setFocus();
        strip.window.installEventFilter(&owner);
        for (int key : {Qt::Key_A, Qt::Key_Right, Qt::Key_Escape, Qt::Key_F5, Qt::Key_Return})
            press(key);
        QTest::keyClick(&strip.img(1), Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(owner.keys, (QList<int>{Qt::Key_A, Qt::Key_Escape, Qt::Key_F5, Qt::Key_Right}));
        QCOMPARE(focused(strip), 1);
    }

    void theFrameMarksKeyboardFocusOnly()
    {
        BetweenOthers strip;
        strip.add(1, 4);
        QVERIFY(strip.waitUntilFilled());
        const QImage plain = strip.img(2).grab().toImage();
        QTest::mouseClick(&strip.img(2), Qt::LeftButton);
        QCOMPARE(focused(strip), 2);
        QVERIFY(!strip.img(2).hasFocusFrame());
        QCOMPARE(strip.img(2).grab().toImage(), plain);
        strip.before.setFocus();
        press(Qt::Key_Tab);
        QVERIFY(strip.img(2).hasFocusFrame());
        const QImage framed = strip.img(2).grab().toImage();
        QCOMPARE(framed.pixelColor(1, 1), strip.view.palette().color(QPalette::Highlight));
        QCOMPARE(framed.pixelColor(40, 30), plain.pixelColor(40, 30));
        press(Qt::Key_Tab);
        QVERIFY(!strip.img(2).hasFocusFrame());
        QCOMPARE(strip.img(2).grab().toImage(), plain);
    }

    void theCurrentThumbnailGoesWithItsPicture()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 5);
        strip.view.setFocus();
        press(Qt::Key_Down);
        QCOMPARE(focused(strip), 2);
        strip.view.RemImage(1);
        QCOMPARE(focused(strip), 1);
        QVERIFY(strip.img(1).hasFocusFrame());
        QCOMPARE(numberOf(strip.img(1).picture()), 3);
        strip.view.RemImage(4);
        QCOMPARE(focused(strip), 1);
        strip.view.RemImage(2);
        QCOMPARE(focused(strip), 1);
        strip.view.RemImage(2);
        QCOMPARE(focused(strip), 0);
        QCOMPARE(strip.numbers(), QList<int>{2});
    }

    void focusStaysWhenTheStripIsFilledAnew()
    {
        BetweenOthers strip;
        strip.add(1, 5);
        strip.view.setFocus();
        press(Qt::Key_End);
        strip.view.ShowImages(numberedList(1, 3));
        QCOMPARE(focused(strip), 0);
        press(Qt::Key_End);
        strip.view.ShowImages(numberedList(1, 2), false);
        QCOMPARE(focused(strip), 1);
        strip.before.setFocus();
        strip.view.ShowImages(numberedList(1, 3));
        QVERIFY(strip.before.hasFocus());
    }

    void aScreenReaderFollowsTheCurrentThumbnail()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 4);
        QCOMPARE(strip.view.accessibleName(), "Thumbnails");
        strip.view.setFocus();
        const auto spoken = [&] {
            auto* window = QAccessible::queryAccessibleInterface(&strip.window);
            auto* current = window ? window->focusChild() : nullptr;
            return current && current->state().focused ? current->text(QAccessible::Name)
                                                       : "nothing";
        };
        QCOMPARE(spoken(), "Image 1");
        press(Qt::Key_Down);
        QCOMPARE(spoken(), "Image 3");
        strip.view.RemImage(1);
        QCOMPARE(spoken(), "Image 2");
    }

    void aScreenReaderCanPressAThumbnail()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 4);
        QSignalSpy clicks(&strip.view, &ThumbView::Click);
        auto* thumbnail = QAccessible::queryAccessibleInterface(&strip.img(1));
        QVERIFY(thumbnail && thumbnail->actionInterface());
        thumbnail->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QTRY_COMPARE(clicks.size(), 1);
        QCOMPARE(clicks.first().first().toInt(), 2);
    }

    void captionsFitBelowTheirThumbnails()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 3);
        for (int pixels : {9, 13, 40}) {
            QFont font = strip.view.font();
            font.setPixelSize(pixels);
            strip.view.setFont(font);
            QCOMPARE(strip.lbl(1).geometry(), QRect(95, 72, 85, 16));
            QVERIFY(strip.lbl(1).fontMetrics().height() <= 16);
            QCOMPARE(strip.lbl(1).font().pixelSize() == pixels, pixels < 14);
        }
        QCOMPARE(strip.lbl(1).textFormat(), Qt::PlainText);
    }
};

QTEST_MAIN(ThumbViewUseTest)
#include "tst_ThumbViewUse.moc"
