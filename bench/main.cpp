// Measures Pevora against other programs and prints one table. Started by bench/run.

#include "CameraList.h"
#include "History.h"
#include "PictureServer.h"
#include "Pictures.h"
#include "Refresh.h"
#include "StartUp.h"
#include "Table.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdio>

int main(int argc, char* argv[])
{
    QGuiApplication application(argc, argv);
    const QTemporaryDir folder;
    PictureServer server;
    Table table;
    // At once, because the table takes a while.
    std::puts("built by " BENCH_COMPILER "\n");
    std::fflush(stdout);
    for (const QSize size : {QSize(640, 480), QSize(1920, 1080), QSize(3840, 2160)}) {
        const Pictures pictures(folder.path(), size);
        benchRefresh(table, server, pictures);
        if (size.width() == 1920)
            benchMovie(table, pictures, folder.path());
        if (size.width() == 3840) {
            benchMemory(table, server, pictures);
            benchThumbnails(table, pictures);
        }
    }
    benchCameraList(table);
    benchStartUp(table);
    return table.print() ? 0 : 1;
}
