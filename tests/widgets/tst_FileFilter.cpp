#include "support/Rows.h"
#include "widgets/FileFilter.h"

class FileFilterTest : public QObject
{
    Q_OBJECT
private slots:
    void eachEntryKeepsItsTextBeforeItsPatterns_data()
    {
        const Rows<QString, QStringList> row("filter", "expected");
        row("images to open", QString(fileFilter::ImagesToOpen),
            {"Image Files (*.bmp,*.jpg,*.gif)(*.bmp *.jpg *.gif)"});
        row("images to save", QString(fileFilter::ImagesToSave),
            {"Bitmap (*.bmp)(*.bmp)", "GIF (*.gif)(*.gif)", "JPEG (*.jpg)(*.jpg)"});
        row("movies", QString(fileFilter::Movies), {"Pevora Movie (*.pvm)(*.pvm)"});
        row("no bar at the end", "A|*.a|B|*.b", {"A(*.a)", "B(*.b)"});
        row("no patterns", "A||B|*.b|", {"B(*.b)"});
        row("a text only", "A", {});
        row("empty", "", {});
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
