// What tips say: of the picture's caption, of each thumbnail, of the countdown.

#include "display/ThumbView.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/ScriptedServer.h"
#include "support/ShownCamera.h"
#include "support/TimeSeam.h"
#include "support/Waiting.h"
#include "viewer/history/History.h"
#include "viewer/history/ImageTip.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"

#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QToolTip>

namespace {

const QDateTime Evening(QDate(2026, 11, 21), QTime(18, 9, 5));

/// What the tip says that opens where the pointer rests on `widget`.
QString openTip(QWidget& widget)
{
    QHelpEvent event(QEvent::ToolTip, {3, 3}, widget.mapToGlobal(QPoint(3, 3)));
    QApplication::sendEvent(&widget, &event);
    return QToolTip::text();
}

class Tips : public ShownCamera
{
public:
    Tips()
    {
        server.listen();
        cam.setClock([this] { return now; });
    }
    void fetchPicture(QSize size)
    {
        const QColor colour = QColor::fromHsv(m_fetched++ * 37 % 360, 255, 255);
        sent << encodedPicture(size, colour);
        server.play(pictureAnswer(sent.last(), "Last-Modified: Sat, 21 Nov 2026 17:09:00 GMT\r\n"));
        fetch(server.url());
    }
    QStringList tipOf(int n, int count)
    {
        const QByteArray bytes = QLocale().toString(sent[n - 1].size()).toUtf8();
        const QSize size = Still::fromBytes(sent[n - 1]).size();
        return {"http://" + server.url(),
                "Fetched: " + Evening.addSecs((n - 1) * 30).toString("yyyy-MM-dd HH:mm:ss"),
                "Last-Modified: Sat, 21 Nov 2026 17:09:00 GMT",
                QString("%1 x %2 pixels, %3 bytes").arg(size.width()).arg(size.height()).arg(bytes),
                QString("%1 of %2").arg(n).arg(count)};
    }
    QLabel& caption() { return part<QLabel>("lblPic"); }

    ScriptedServer server;
    QDateTime now = Evening;
    QList<QByteArray> sent;

private:
    int m_fetched = 0;
};

} // namespace

class ImageTipTest : public QObject
{
    Q_OBJECT
private slots:
    void cleanup() { QToolTip::hideText(); }

    void theCaptionsTipTellsOfTheImageOnShow()
    {
        Tips t;
        QCOMPARE(t.caption().toolTip(), QString());
        t.fetchPicture({64, 48});
        t.now = t.now.addSecs(30);
        t.fetchPicture({320, 240});
        QCOMPARE(t.caption().accessibleDescription().split('\n'), t.tipOf(2, 2));
        QCOMPARE(openTip(t.caption()), asToolTip(t.tipOf(2, 2).join('\n')));
        t.press(ToolBar::Back);
        QCOMPARE(t.caption().toolTip(), asToolTip(t.tipOf(1, 2).join('\n')));
        t.chooseFromMenu(ToolBar::Delete, 2);
        QCOMPARE(t.caption().text(), "Image N/A");
        QCOMPARE(t.caption().toolTip(), QString());
        QCOMPARE(t.caption().accessibleDescription(), QString());
    }

    void eachThumbnailHasItsTip()
    {
        Tips t;
        for (int i = 0; i < 3; ++i) {
            t.fetchPicture({64 + i, 48});
            t.now = t.now.addSecs(30);
        }
        t.press(ToolBar::ToggleView);
        for (int n = 1; n <= 3; ++n) {
            for (const char* part : {"img(%1)", "lbl(%1)"}) {
                auto* one =
                    t.part<ThumbView>("tvMain").findChild<QWidget*>(QString(part).arg(n - 1));
                QVERIFY(one);
                QCOMPARE(openTip(*one), asToolTip(t.tipOf(n, 3).join('\n')));
                QToolTip::hideText();
            }
        }
    }

    void anImageOfAFileHasNeitherCameraNorTime()
    {
        History history;
        history.setClock([] { return Evening; });
        const QByteArray bytes = encodedPicture({64, 48}, Qt::red);
        history.AppendFile(Still::fromBytes(bytes));
        history.AppendFrame(Still::fromBytes(bytes));
        const QString size = "64 x 48 pixels, " + QLocale().toString(bytes.size()) + " bytes\n";
        QCOMPARE(imageTip(history, 1), size + "1 of 2");
        QCOMPARE(imageTip(history, 2), size + "2 of 2");
        QCOMPARE(imageTip(history, 0), QString());
        QCOMPARE(imageTip(history, 3), QString());
    }

    void theAddressIsThatOfTheCameraWithoutItsHeader_data()
    {
        const Rows<QString, QString> row("camera", "first line");
        row("port", "host:8080/a.jpg", "http://host:8080/a.jpg");
        row("header", QString("host/a.jpg") + QChar(1) + "Cookie: secret", "http://host/a.jpg");
        row("TLS", "https://host/a.jpg", "https://host/a.jpg");
    }

    void theAddressIsThatOfTheCameraWithoutItsHeader()
    {
        QFETCH(QString, camera);
        History history;
        history.Append(Still::fromBytes(smallGif()), "host/a.jpg", "", camera);
        const QStringList lines = imageTip(history, 1).split('\n');
        QTEST(lines.first(), "first line");
        QCOMPARE(lines.size(), 4); // no Last-Modified
    }

    void markupInAnAddressIsShown()
    {
        QCOMPARE(asToolTip("http://host/<b>&amp;</b>"),
                 "<p style='white-space:pre'>http://host/&lt;b&gt;&amp;amp;&lt;/b&gt;</p>");
        QCOMPARE(asToolTip({}), QString());
    }

    void theCountdownsTipCountsWhileItIsOpen()
    {
        Tips t;
        t.fetchPicture({64, 48});
        auto& button = *t.part<ToolBar>("tbMain").button(ToolBar::Timer);
        t.press(ToolBar::Timer);
        QCOMPARE(openTip(button), "Timer: Refreshing in 30 sec(s)");
        QPointer<QWidget> open;
        for (auto* one : QApplication::topLevelWidgets()) {
            if (one->windowType() == Qt::ToolTip && one->isVisible())
                open = one;
        }
        QVERIFY(open);
        const QPoint place = open->pos();
        for (int left = 29; left > 26; --left) {
            t.timer("tmrRe").elapse();
            QCOMPARE(QToolTip::text(), QString("Refreshing in %1 sec(s)").arg(left));
            QVERIFY(QToolTip::isVisible());
            QCOMPARE(open->pos(), place);
        }
        // Once it is closed, or another's is open, nothing comes of itself.
        QToolTip::hideText();
        QTRY_VERIFY(!QToolTip::isVisible());
        t.timer("tmrRe").elapse();
        QVERIFY(!QToolTip::isVisible());
        openTip(t.caption());
        const QString other = QToolTip::text();
        t.timer("tmrRe").elapse();
        QCOMPARE(QToolTip::text(), other);
    }
};

QTEST_MAIN(ImageTipTest)
#include "tst_ImageTip.moc"
