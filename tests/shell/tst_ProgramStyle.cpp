#include "shell/ProgramStyle.h"

#include <QMainWindow>
#include <QMenuBar>
#include <QTest>
#include <QToolButton>

namespace {

/// A window too narrow for its menus.
class NarrowWindow : public QMainWindow
{
public:
    NarrowWindow()
    {
        for (const char* title : {"Options", "View", "Favorites", "Help"})
            menuBar()->addMenu(title);
        setFixedWidth(120);
        show();
    }

    QToolButton& moreButton() const
    {
        return *menuBar()->findChild<QToolButton*>("qt_menubar_ext_button");
    }
};

/// How light the lightest, and how dark the darkest pixel is.
std::pair<int, int> greys(const QImage& image)
{
    int lightest = 0;
    int darkest = 255;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            lightest = std::max(lightest, qGray(image.pixel(x, y)));
            darkest = std::min(darkest, qGray(image.pixel(x, y)));
        }
    }
    return {lightest, darkest};
}

} // namespace

class ProgramStyleTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QApplication::setStyle(new ProgramStyle); }

    void theArrowOfANarrowMenuBarIsOurOwn()
    {
        NarrowWindow window;
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QVERIFY(window.moreButton().isVisible());
        QCOMPARE(window.moreButton().icon().name(), "more");
    }

    void theArrowIsSeenOnADarkDesktop()
    {
        QPalette dark(QColor(0x30, 0x30, 0x30), QColor(0x20, 0x20, 0x20));
        dark.setColor(QPalette::ButtonText, Qt::white);
        QApplication::setPalette(dark);
        NarrowWindow window;
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const auto [lightest, darkest] = greys(window.moreButton().grab().toImage());
        QVERIFY2(lightest - darkest > 100, qPrintable(QString::number(lightest - darkest)));
        QApplication::setPalette(QPalette());
    }

    void everythingElseIsTheDesktops()
    {
        const QStyle* style = QApplication::style();
        const auto* own = qobject_cast<const ProgramStyle*>(style);
        QVERIFY(own);
        for (const auto which : {QStyle::SP_MessageBoxWarning, QStyle::SP_DirIcon,
                                 QStyle::SP_ToolBarVerticalExtensionButton}) {
            const QImage ours = style->standardIcon(which).pixmap(32).toImage();
            QVERIFY(!ours.isNull());
            QCOMPARE(ours, own->baseStyle()->standardIcon(which).pixmap(32).toImage());
        }
    }
};

QTEST_MAIN(ProgramStyleTest)
#include "tst_ProgramStyle.moc"
