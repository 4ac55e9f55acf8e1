// The least that a program with a main window can be: what Pevora's start is measured against.

#include <QApplication>
#include <QMainWindow>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.resize(900, 640);
    window.show();
    return QApplication::exec();
}
