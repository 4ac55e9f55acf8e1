// Where the keyboard is in the main window, and where it goes when a part is hidden.

#include "support/Rows.h"
#include "support/ShownMain.h"

#include <utility>

class frmMainFocusTest : public QObject
{
    Q_OBJECT
private slots:
    void theKeyboardStaysInView_data()
    {
        const Rows<QString, Qt::Key, QStringList, QString> row("focused", "key", "hiddenBefore",
                                                               "after");
        row("list", "cList", Qt::Key_L, {}, "cmbUrl");
        row("option", "opt(1)", Qt::Key_L, {}, "cmbUrl");
        row("list, no goto bar", "cList", Qt::Key_L, {"mnuViewGoto"}, "Cam");
        row("goto bar", "cmbUrl", Qt::Key_G, {}, "Cam");
        row("goto bar alone", "cmbUrl", Qt::Key_G, {"mnuViewList", "mnuViewTb"}, "Cam");
        row("toolbar", "button(7)", Qt::Key_T, {}, "cmbUrl");
    }

    void theKeyboardStaysInView()
    {
        QFETCH(QString, focused);
        QFETCH(Qt::Key, key);
        QFETCH(QStringList, hiddenBefore);
        OpenMain m;
        for (const QString& entry : hiddenBefore)
            m.entry(entry).trigger();
        m.part<QWidget>(focused).setFocus();
        QVERIFY(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), key, Qt::ControlModifier);
        QVERIFY(QApplication::focusWidget());
        QTEST(QApplication::focusWidget()->objectName(), "after");
        QVERIFY(QApplication::focusWidget()->isVisible());
    }

    void hidingAnotherPartLeavesTheKeyboard()
    {
        OpenMain m;
        m.part<QWidget>("cList").setFocus();
        auto* const tree = QApplication::focusWidget();
        QVERIFY(tree && m.part<QWidget>("cList").isAncestorOf(tree));
        for (const auto key : {Qt::Key_T, Qt::Key_G, Qt::Key_T}) {
            QTest::keyClick(tree, key, Qt::ControlModifier);
            QCOMPARE(QApplication::focusWidget(), tree);
        }
    }

    void shortcutsWorkFromTheList()
    {
        OpenMain m;
        for (const auto& [key, entry] :
             {std::pair{Qt::Key_T, "mnuViewTb"}, std::pair{Qt::Key_G, "mnuViewGoto"},
              std::pair{Qt::Key_I, "mnuViewNew"}, std::pair{Qt::Key_O, "mnuViewOSize"},
              std::pair{Qt::Key_L, "mnuViewList"}}) {
            m.part<QWidget>("cList").setFocus();
            const bool before = m.entry(entry).isChecked();
            QTest::keyClick(QApplication::focusWidget(), key, Qt::ControlModifier);
            QCOMPARE(m.entry(entry).isChecked(), !before);
        }
    }
};

QTEST_MAIN(frmMainFocusTest)
#include "tst_frmMainFocus.moc"
