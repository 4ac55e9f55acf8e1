#include "widgets/FileFilter.h"

class FileFilterTest : public QObject
{
    Q_OBJECT
private slots:
    void eachEntryKeepsItsTextBeforeItsPatterns_data()
    {
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("images to open")
            << QString(fileFilter::ImagesToOpen)
            << QStringList{"Image Files (*.bmp,*.jpg,*.gif)(*.bmp *.jpg *.gif)"};
        QTest::newRow("images to save")
            << QString(fileFilter::ImagesToSave)
            << QStringList{"Bitmap (*.bmp)(*.bmp)", "GIF (*.gif)(*.gif)", "JPEG (*.jpg)(*.jpg)"};
        QTest::newRow("movies") << QString(fileFilter::Movies)
                                << QStringList{"Pevora Movie (*.pvm)(*.pvm)"};
        QTest::newRow("no bar at the end") << "A|*.a|B|*.b" << QStringList{"A(*.a)", "B(*.b)"};
        QTest::newRow("no patterns") << "A||B|*.b|" << QStringList{"B(*.b)"};
        QTest::newRow("a text only") << "A" << QStringList{};
        QTest::newRow("empty") << "" << QStringList{};
    }

    void eachEntryKeepsItsTextBeforeItsPatterns()
    {
        QFETCH(QString, filter);
        QFETCH(QStringList, expected);
        QCOMPARE(fileFilter::toNameFilters(filter), expected);
    }
};

QTEST_GUILESS_MAIN(FileFilterTest)
#include "tst_FileFilter.moc"
