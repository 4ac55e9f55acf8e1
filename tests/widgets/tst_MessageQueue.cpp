#include "widgets/MessageQueue.h"

#include <QCheckBox>

namespace {

MessageQueue::Message message(const QString& text, const QString& skipRest = {})
{
    return {QMessageBox::Information, "Title", text, skipRest};
}

/// The boxes on screen.
QList<QMessageBox*> boxes()
{
    QList<QMessageBox*> found;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (auto* box = qobject_cast<QMessageBox*>(window); box && box->isVisible())
            found.append(box);
    }
    return found;
}

/// Answers the one box that is on screen; gives its text.
QString answer(QMessageBox::StandardButton button = QMessageBox::Ok)
{
    const auto open = boxes();
    if (open.size() != 1)
        return QString("%1 boxes").arg(open.size());
    const QString text = open.first()->text();
    open.first()->button(button)->click();
    return text;
}

/// A window with a control in it, whose messages these are.
struct Owner
{
    QWidget window;
    QWidget control{&window};
    MessageQueue* messages = new MessageQueue(&control);
};

} // namespace

class MessageQueueTest : public QObject
{
    Q_OBJECT
private slots:
    void aMessageIsAboveTheWindowOfItsOwner()
    {
        Owner owner;
        owner.messages->tell(
            {QMessageBox::Critical, "Title", "<b>Text</b> & more", {}, "nameOfBox"});
        QCOMPARE(boxes().size(), 1);
        QPointer<QMessageBox> box = boxes().first();
        QCOMPARE(box->parentWidget(), &owner.window);
        QVERIFY(box->isModal());
        QCOMPARE(box->windowTitle(), "Title");
        QCOMPARE(box->text(), "<b>Text</b> & more");
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QCOMPARE(box->icon(), QMessageBox::Critical);
        QCOMPARE(box->objectName(), "nameOfBox");
        QCOMPARE(box->standardButtons(), QMessageBox::Ok);
        QVERIFY(!box->checkBox());
        answer();
        QTRY_VERIFY(!box);
    }

    void messagesComeOneAfterTheOther()
    {
        Owner owner;
        owner.messages->tell(message("first"), 2);
        owner.messages->tell(message("none"), 0);
        owner.messages->ask(message("question"), [] {});
        owner.messages->tell(message("last"));
        QCOMPARE(answer(), "first");
        QCOMPARE(answer(), "first");
        QCOMPARE(answer(QMessageBox::No), "question");
        QCOMPARE(answer(), "last");
        QCOMPARE(boxes().size(), 0);
        owner.messages->tell(message("once more"));
        QCOMPARE(answer(), "once more");
        QCOMPARE(boxes().size(), 0);
    }

    void escapeAndClosingAnswerToo()
    {
        Owner owner;
        owner.messages->tell(message("first"), 3);
        QTest::keyClick(boxes().first(), Qt::Key_Escape);
        boxes().first()->close();
        QCOMPARE(answer(), "first");
        QCOMPARE(boxes().size(), 0);
    }

    void theCheckBoxEndsTheRepetitionsOfOneMessage()
    {
        Owner owner;
        owner.messages->tell(message("first", "No more"), 100'000);
        owner.messages->tell(message("second", "No more"), 2);
        QCOMPARE(answer(), "first");
        QCheckBox* noMore = boxes().first()->checkBox();
        QVERIFY(noMore && !noMore->isChecked());
        QCOMPARE(noMore->text(), "No more");
        noMore->setChecked(true);
        QCOMPARE(answer(), "first");
        QVERIFY(!boxes().first()->checkBox()->isChecked());
        QCOMPARE(answer(), "second");
        QCOMPARE(answer(), "second");
        QCOMPARE(boxes().size(), 0);
    }

    void onlyYesIsAYes()
    {
        Owner owner;
        int asked = 0;
        for (int i = 0; i < 3; ++i)
            owner.messages->ask(message("question"), [&] { ++asked; });
        const QMessageBox& box = *boxes().first();
        QCOMPARE(box.standardButtons(), QMessageBox::Yes | QMessageBox::No);
        QCOMPARE(box.defaultButton(), box.button(QMessageBox::No));
        QCOMPARE(answer(QMessageBox::No), "question");
        QTest::keyClick(boxes().first(), Qt::Key_Escape);
        QCOMPARE(asked, 0);
        QCOMPARE(answer(QMessageBox::Yes), "question");
        QCOMPARE(asked, 1);
    }

    void whatAYesTellsComesBehindWhatWaits()
    {
        Owner owner;
        owner.messages->ask(message("question"), [&] { owner.messages->tell(message("told")); });
        owner.messages->tell(message("waits"));
        answer(QMessageBox::Yes);
        QCOMPARE(answer(), "waits");
        QCOMPARE(answer(), "told");
        owner.messages->ask(message("question"), [&] { owner.messages->tell(message("told")); });
        answer(QMessageBox::Yes);
        QCOMPARE(answer(), "told");
        QCOMPARE(boxes().size(), 0);
    }

    void atTheEndNoneOpensAnyMore()
    {
        Owner owner;
        bool yes = false;
        owner.messages->ask(message("question"), [&] { yes = true; });
        owner.messages->tell(message("waits"), 3);
        owner.messages->end();
        answer(QMessageBox::Yes);
        QVERIFY(!yes);
        owner.messages->tell(message("comes"));
        owner.messages->ask(message("comes"), [&] { yes = true; });
        QCOMPARE(boxes().size(), 0);
    }

    void aBoxMayOutliveItsOwner()
    {
        QWidget window;
        auto* control = new QWidget(&window);
        (new MessageQueue(control))->tell(message("first"), 2);
        control->deleteLater();
        QCoreApplication::sendPostedEvents(control, QEvent::DeferredDelete);
        QCOMPARE(answer(), "first");
        QCOMPARE(boxes().size(), 0);
    }
};

QTEST_MAIN(MessageQueueTest)
#include "tst_MessageQueue.moc"
