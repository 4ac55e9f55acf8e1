#include "camlist/DefaultCameras.h"

#include "cameras/CameraKey.h"
#include "support/Paths.h"
#include "support/ScratchFile.h"

class DefaultCamerasTest : public QObject
{
    Q_OBJECT
private slots:
    void theTwelveCamerasInTheirOrder()
    {
        QStringList found;
        for (const CameraRecord& camera : defaultCameras())
            found << camera.category + ": " + camera.name;
        QCOMPARE(found,
                 (QStringList{"Cities: NewYork, NY", "Cities: Miami, FL", "Cities: Boston, MA",
                              "Cities: Las Vegas, NV", "Cities: L.A., CA", "Cities: Seattle, WA",
                              "Cities: Trafalgar Sq., London", "Cities: Dublin, Ireland",
                              "Cities: Quito, Ecuador", "Cities: Maui, HI", "Cities: Howell, MI",
                              "Sights: Big Ben"}));
    }

    void noneHasAnExtraHeader()
    {
        for (const CameraRecord& camera : defaultCameras())
            QCOMPARE(camera.key.count(HeaderMark), 0);
    }

    void everyKeyIsTheAddressWithoutItsScheme()
    {
        QSet<QString> nodes;
        const QList<CameraRecord> cameras = defaultCameras();
        const QList<QStringList> all = rows();
        QCOMPARE(cameras.size(), all.size());
        for (qsizetype i = 0; i < all.size(); ++i) {
            const QString address = all[i][2];
            QVERIFY2(address.startsWith("http://"), qPrintable(address));
            QCOMPARE(cameras[i].key, address.mid(7));
            const QUrl url(address, QUrl::StrictMode);
            QVERIFY2(url.isValid() && url.host().contains('.') && !url.path().isEmpty(),
                     qPrintable(address));
            nodes << cameras[i].key << cameras[i].category;
        }
        // In the tree a key is unlike every other and unlike every category.
        QCOMPARE(nodes.size(), 12 + 2);
    }

    void aListOfThemIsWrittenAndReadUnchanged()
    {
        const QList<CameraRecord> cameras = defaultCameras();
        QCOMPARE(cameras.size(), 12);
        QCOMPARE(readCameraListLine(writeCameraListLine(cameras)), cameras);
    }

    void everyRowSaysWhereItsAddressIsFrom()
    {
        for (const QStringList& row : rows()) {
            QCOMPARE(row.size(), 7);
            for (const QString& column : row)
                QVERIFY2(!column.isEmpty() && column == column.trimmed(), qPrintable(column));
            const QUrl page(row[3], QUrl::StrictMode);
            QVERIFY2(page.isValid() && page.scheme().startsWith("http") && !page.host().isEmpty(),
                     qPrintable(row[3]));
            QVERIFY2(QDate::fromString(row[4], Qt::ISODate).isValid(), qPrintable(row[4]));
            QCOMPARE(row[5], "no");
        }
    }

private:
    /// The rows of the data file without that of the columns' names.
    static QList<QStringList> rows()
    {
        const QByteArray table = contentOf(sourcePath("resources/default-cameras.tsv"));
        QList<QStringList> rows;
        for (const QString& line : QString::fromUtf8(table).split('\n', Qt::SkipEmptyParts))
            rows << line.split('\t');
        if (rows.takeFirst().join(' ') != "category name address page date checked note")
            qFatal("other columns");
        return rows;
    }
};

QTEST_GUILESS_MAIN(DefaultCamerasTest)
#include "tst_DefaultCameras.moc"
