// Where the keyboard is in the main window, and where it goes when a part is hidden.

#include "support/Rows.h"
#include "support/ShownMain.h"

#include <algorithm>
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
        QFETCH(QString, after);
        ShownMain m;
        m.shown();
        for (const QString& entry : hiddenBefore)
            m.entry(entry).trigger();
        m.part<QWidget>(focused).setFocus();
        QVERIFY(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), key, Qt::ControlModifier);
        QVERIFY(QApplication::focusWidget());
        QCOMPARE(QApplication::focusWidget()->objectName(), after);
        QVERIFY(QApplication::focusWidget()->isVisible());
    }

    void hidingAnotherPartLeavesTheKeyboard()
    {
        ShownMain m;
        m.shown();
        m.part<QWidget>("cList").setFocus();
        auto* const tree = QApplication::focusWidget();
        QVERIFY(tree && m.part<QWidget>("cList").isAncestorOf(tree));
        for (const auto key : {Qt::Key_T, Qt::Key_G, Qt::Key_T}) {
            QTest::keyClick(tree, key, Qt::ControlModifier);
            QCOMPARE(QApplication::focusWidget(), tree);
        }
    }

    void tabGoesThroughTheParts()
    {
        ShownMain m;
        m.shown();
        m.part<QWidget>("cList").setFocus();
        QStringList order;
        for (int i = 0; i < 40; ++i) {
            const auto* now = QApplication::focusWidget();
            const auto part =
                std::find_if(m_parts.begin(), m_parts.end(), [&](const QString& name) {
                    return &m.part<QWidget>(name) == now || m.part<QWidget>(name).isAncestorOf(now);
                });
            QVERIFY(part != m_parts.end());
            if (order.isEmpty() || order.last() != *part)
                order.append(*part);
            if (order.size() > 4)
                break;
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(order, (QStringList{"cList", "opt(1)", "Cam", "cmbUrl", "cList"}));
    }

    void shortcutsWorkFromTheList()
    {
        ShownMain m;
        m.shown();
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

private:
    const QStringList m_parts = {"cList", "opt(0)", "opt(1)", "Cam", "cmbUrl"};
};

QTEST_MAIN(frmMainFocusTest)
#include "tst_frmMainFocus.moc"
