// The message bar: what it shows and says, and how a person gets rid of it.

#include "support/Rows.h"
#include "support/Waiting.h"
#include "widgets/Notice.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QPaintEvent>
#include <QPushButton>
#include <QToolButton>

#include <memory>

namespace {

int alerts = 0;

const Notice::Message Stopped{
    Notice::Icon::Warning, "Refreshing has stopped.", {{1, "Keep Refreshing"}, {2, "Resume"}}};
const Notice::Message Saved{Notice::Icon::Information, "Saved.", {}};

} // namespace

/// In the place of Qt's own, which tells nobody without a screen reader on the session's bus.
void QAccessible::updateAccessibility(QAccessibleEvent* event)
{
    if (event->type() == QAccessible::Alert && qobject_cast<Notice*>(event->object()))
        ++alerts;
}

class NoticeTest : public QObject
{
    Q_OBJECT
private:
    QPushButton* button(int id)
    {
        return notice->findChild<QPushButton*>(QString("action(%1)").arg(id));
    }
    void setRoom(int width) { notice->setRoom({10, 20, width, 200}); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == notice && event->type() == QEvent::Paint)
            painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    QRegion painted;
    std::unique_ptr<QWidget> window;
    QLineEdit* box = nullptr;
    Notice* notice = nullptr;

private slots:
    void init()
    {
        window = std::make_unique<QWidget>();
        window->resize(900, 300);
        box = new QLineEdit(window.get());
        box->move(10, 250);
        notice = new Notice(window.get());
        setRoom(800);
        window->show();
        window->activateWindow();
        QVERIFY(waitForActive(window.get()));
        box->setFocus();
        alerts = 0;
    }
    void cleanup() { window.reset(); }

    void itIsHiddenUntilItHasSomethingToSay()
    {
        QVERIFY(notice->isHidden());
        QCOMPARE(notice->sentence(), "");
        notice->tell(Stopped);
        QVERIFY(notice->isVisible());
        QCOMPARE(notice->sentence(), "Refreshing has stopped.");
        QCOMPARE(notice->findChild<QLabel*>("sentence")->text(), "Refreshing has stopped.");
        notice->dismiss();
        QVERIFY(notice->isHidden());
        QCOMPARE(notice->sentence(), "");
    }

    void aNewOneReplacesTheOld()
    {
        notice->tell(Stopped);
        QVERIFY(button(1) && button(2));
        notice->tell(Saved);
        QCOMPARE(notice->sentence(), "Saved.");
        QTRY_VERIFY(!button(1) && !button(2));
    }

    void itIsSpokenWhenItAppears()
    {
        notice->tell(Stopped);
        QCOMPARE(alerts, 1);
        auto* spoken = QAccessible::queryAccessibleInterface(notice);
        QCOMPARE(spoken->role(), QAccessible::AlertMessage);
        QCOMPARE(spoken->text(QAccessible::Name), "Refreshing has stopped.");
        // The same again is no news, unless it had gone.
        notice->tell(Stopped);
        QCOMPARE(alerts, 1);
        notice->dismiss();
        notice->tell(Stopped);
        QCOMPARE(alerts, 2);
    }

    void itTakesNoFocusAndIsReachedByTab()
    {
        notice->tell(Stopped);
        QVERIFY(box->hasFocus());
        QStringList reached;
        for (int i = 0; i < 3; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached << QApplication::focusWidget()->objectName();
        }
        QCOMPARE(reached, (QStringList{"action(1)", "action(2)", "close"}));
        for (const char* name : {"action(1)", "action(2)", "close"}) {
            auto* one = notice->findChild<QWidget*>(QLatin1StringView(name));
            QVERIFY(!QAccessible::queryAccessibleInterface(one)->text(QAccessible::Name).isEmpty());
        }
    }

    void aButtonIsChosenOnce()
    {
        QSignalSpy chosen(notice, &Notice::Chosen);
        QSignalSpy closed(notice, &Notice::Closed);
        notice->tell(Stopped);
        QTest::mouseClick(button(2), Qt::LeftButton);
        QCOMPARE(chosen.count(), 1);
        QCOMPARE(chosen.first().first().toInt(), 2);
        QVERIFY(notice->isHidden());
        QCOMPARE(closed.count(), 0);
    }

    void aHandlerMayTellSomethingElse()
    {
        connect(notice, &Notice::Chosen, this, [this] { notice->tell(Saved); });
        notice->tell(Stopped);
        QTest::mouseClick(button(1), Qt::LeftButton);
        QCOMPARE(notice->sentence(), "Saved.");
    }

    void theUserClosesIt_data()
    {
        const Rows<bool> row("byKey");
        row("by a click", false);
        row("by Escape", true);
    }

    void theUserClosesIt()
    {
        QFETCH(bool, byKey);
        QSignalSpy closed(notice, &Notice::Closed);
        notice->tell(Stopped);
        auto* cross = notice->findChild<QToolButton*>("close");
        if (byKey) {
            button(1)->setFocus();
            QTest::keyClick(button(1), Qt::Key_Escape);
        } else {
            QTest::mouseClick(cross, Qt::LeftButton);
        }
        QVERIFY(notice->isHidden());
        QCOMPARE(closed.count(), 1);
        QCOMPARE(closed.first().first().toString(), "Refreshing has stopped.");
    }

    void itTakesItsRoomsWidthAndNoMoreHeightThanItNeeds()
    {
        notice->tell(Stopped);
        QCOMPARE(notice->geometry().topLeft(), QPoint(10, 20));
        QCOMPARE(notice->width(), 800);
        const int oneLine = notice->height();
        QVERIFY(button(1)->mapTo(notice, QPoint()).y() < oneLine / 2);
        // Where it is narrow, its buttons go below the sentence.
        setRoom(260);
        QCOMPARE(notice->width(), 260);
        QVERIFY(notice->height() > oneLine);
        auto* sentence = notice->findChild<QLabel*>("sentence");
        QVERIFY(button(1)->mapTo(notice, QPoint()).y() >= sentence->geometry().bottom());
        QVERIFY(
            notice->rect().contains(QRect(button(2)->mapTo(notice, QPoint()), button(2)->size())));
    }

    void aLongSentenceIsWrapped()
    {
        notice->tell(Saved);
        const int oneLine = notice->height();
        notice->tell({Notice::Icon::Warning, QString("word ").repeated(60), {}});
        QVERIFY(notice->height() > oneLine);
        QCOMPARE(notice->width(), 800);
    }

    void markupIsText()
    {
        notice->tell({Notice::Icon::Warning, "<b>cam</b> &amp; more", {}});
        auto* sentence = notice->findChild<QLabel*>("sentence");
        QCOMPARE(sentence->textFormat(), Qt::PlainText);
        QCOMPARE(QAccessible::queryAccessibleInterface(notice)->text(QAccessible::Name),
                 "<b>cam</b> &amp; more");
    }

    void itIsReadableOnADarkDesktop()
    {
        QPalette dark(QColor(40, 40, 40), QColor(30, 30, 30));
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            dark.setColor(role, Qt::white);
        window->setPalette(dark);
        notice->tell(Stopped);
        const QImage shown = notice->grab().toImage();
        // The ground, beside everything that stands on it.
        const QColor ground = shown.pixelColor(3, shown.height() / 2);
        QVERIFY2(ground.lightness() < 110, qPrintable(ground.name()));
        QCOMPARE(notice->findChild<QLabel*>("sentence")->palette().color(QPalette::WindowText),
                 QColor(Qt::white));
    }

    void oneOfAnotherKindIsPaintedWhole()
    {
        notice->tell(Saved);
        notice->installEventFilter(this);
        QTRY_VERIFY(painted.contains(notice->rect().center()));
        const QRect place = notice->geometry();
        painted = {};
        notice->tell({Notice::Icon::Warning, "Not saved.", {}});
        QTRY_VERIFY(!painted.isEmpty());
        QCOMPARE(notice->geometry(), place);
        QCOMPARE(painted, QRegion(notice->rect()));
    }
};

QTEST_MAIN(NoticeTest)
#include "tst_Notice.moc"
