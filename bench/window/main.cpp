// What Pevora's start is measured against: the least that a program with a main window can be, and
// with a label and a menu bar, "labelled", the least that one with texts can be. The first text
// sets the fonts up, which costs any program the same.

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    if (argc > 1 && qstrcmp(argv[1], "labelled") == 0) {
        window.setCentralWidget(new QLabel(QStringLiteral("A label"), &window));
        window.menuBar()->addMenu(QStringLiteral("&File"))->addAction(QStringLiteral("E&xit"));
    }
    window.resize(900, 640);
    window.show();
    return QApplication::exec();
}
