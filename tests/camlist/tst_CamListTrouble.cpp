// What is told of a list.dat that cannot be used, and that it is kept; and that none is made.

#include "camlist/CameraListFile.h"
#include "support/Dialogs.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"
#include "support/ShownList.h"

#include <QMessageBox>
#include <QRandomGenerator>

namespace {

const QByteArray Two = "Cities\377Harbour\377URL1\377Sights\377Tower\377URL2";
const QByteArray New = "News\377New\377URL9";

} // namespace

class CamListTroubleTest : public QObject
{
    Q_OBJECT
private slots:
    void whatIsTrusted_data()
    {
        const Rows<QByteArray, bool> row("line", "isTrusted");
        const QByteArray field(LongestField, 'x');
        row("empty", {}, true);
        row("cameras", Two, true);
        row("an incomplete one more", Two + "\377half", true);
        row("a header", "c\377n\377k\1h\1", true);
        row("white space", "c\r\n\377\tn\377k", true);
        row("no camera", "c\377n", false);
        row("longest fields", field + '\377' + field + '\377' + field, true);
        row("too long a category", field + "x\377n\377k", false);
        row("too long a last field", "c\377n\377k" + field, false);
        for (int one = 0; one < 0x20; ++one) {
            const QByteArray control(1, char(one));
            row("control " + std::to_string(one), "c\377n\377k" + control,
                one == 1 || QByteArray("\t\r\n").contains(control));
        }
        row("delete", "c\377n\x7F\377k", false);
        row("no control", QByteArray("c\377\x80\x9F\377\xA0"), true);
    }

    void whatIsTrusted()
    {
        QFETCH(QByteArray, line);
        QTEST(isTrustedLine(line), "isTrusted");
    }

    void whatCannotBeUsedIsToldOnce_data()
    {
        const Rows<QByteArray, QString> row("kind", "why");
        row("folder", "folder", "is not an ordinary file, so the list stays empty.");
        row("too long", "too long", "is larger than 64 MiB, so the list stays empty.");
        QByteArray many = Two;
        for (qsizetype i = 2; i <= CameraListFile::MaxCameras; ++i)
            many += "\xFF"
                    "c\xFFn\xFF" +
                    QByteArray::number(i, 36);
        row("too many", many, "has over 1,500,000 cameras, so the list stays empty.");
        row("text", "Dear diary,\r\n", "is no list of cameras, so the list stays empty.");
        QByteArray random(300'000, Qt::Uninitialized);
        QRandomGenerator generator(20261122);
        for (char& one : random)
            one = char(generator.bounded(256));
        row("random bytes", random, "is no list of cameras, so the list stays empty.");
        row("no end", Two + "\xFF" + QByteArray(70'000, 'x') + "\xFFn\xFFk\r\n",
            "is no list of cameras, so the list stays empty.");
    }

    void whatCannotBeUsedIsToldOnce()
    {
        QFETCH(QByteArray, kind);
        QFETCH(QString, why);
        ShownList shown;
        if (kind == "folder")
            QVERIFY(QDir().mkdir(shown.path()));
        else if (kind == "too long")
            QVERIFY(QFile(shown.path()).open(QIODevice::WriteOnly) &&
                    QFile::resize(shown.path(), CameraListFile::MaxBytes + 1));
        else
            shown.write("list.dat", kind);
        shown.list().LoadFile();
        QCOMPARE(shown.all(), QStringList());
        const auto told = answerMessage(QMessageBox::Ok);
        QCOMPARE(told.text, shown.path() + " " + why +
                                "\n\nThe file is kept as it is. When you change the list, it gets "
                                "the name list.dat.bak.");
        QCOMPARE(told.title, "Pevora");
        QCOMPARE(told.icon, int(QMessageBox::Warning));
        // Not again, and not changed.
        QVERIFY(shown.list().SaveFile());
        shown.list().LoadFile();
        QCoreApplication::sendPostedEvents();
        QVERIFY(!shown.window().findChild<QMessageBox*>());
        QCOMPARE(namesIn(shown.path("")), QStringList("list.dat"));
        // A list of its own takes its place.
        shown.list().AddCam("New", "URL9", "News");
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(contentOf(shown.path()), New + "\r\n");
        QCOMPARE(namesIn(shown.path("")), QStringList({"list.dat", "list.dat.bak"}));
    }

    void aListOfTooManyIsNotWritten()
    {
        QTemporaryDir folder;
        CameraListFile file(folder.path());
        const QByteArray most =
            Two.left(Two.indexOf('\xFF')) + QByteArray(3 * CameraListFile::MaxCameras - 1, '\xFF');
        QVERIFY(file.write(most));
        const SaveOutcome outcome = file.write(most + "\xFF\xFF\xFF");
        QVERIFY(!outcome);
        QCOMPARE(outcome.reason, "The list has over 1,500,000 cameras");
        QVERIFY(contentOf(file.path()) == most + "\r\n");
    }

    void whatMayNotBeUsedIsTold_data()
    {
        const Rows<bool, QString> row("mayBeRead", "why");
        row("read", false, "cannot be read, so the list stays empty.");
        row("write", true, "cannot be changed: what you change in the list cannot be saved.");
    }

    void whatMayNotBeUsedIsTold()
    {
        if (ranAsOrdinaryUser())
            return;
        QFETCH(bool, mayBeRead);
        QFETCH(QString, why);
        ShownList shown;
        shown.write("list.dat", Two + "\r\n");
        QVERIFY(
            QFile::setPermissions(shown.path(), mayBeRead ? QFile::ReadOwner : QFile::WriteOwner));
        shown.list().LoadFile();
        QCOMPARE(shown.all().isEmpty(), !mayBeRead);
        QVERIFY(answerMessage(QMessageBox::Ok).text.startsWith(shown.path() + " " + why));
        if (!mayBeRead)
            return;
        shown.list().AddCam("New", "URL9", "News");
        const SaveOutcome outcome = shown.list().SaveFile();
        QVERIFY(!outcome);
        QCOMPARE(outcome.reason, "Permission denied");
        // It is saved as soon as it can be.
        QVERIFY(QFile::setPermissions(shown.path(), QFile::ReadOwner | QFile::WriteOwner));
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(contentOf(shown.path()), Two + '\xFF' + New + "\r\n");
    }

    /// Whatever comes into the tree, the list that is written of it can be read.
    void whatIsWrittenIsTrusted()
    {
        ShownList shown(Two + "\r\n");
        QString controls;
        for (char16_t one = 0; one < 0x80; ++one)
            controls += QChar(one);
        shown.list().AddCam(controls, controls + "k", "a" + controls);
        shown.list().AddCam(QString(70'000, 'n'), QString(70'000, QChar(0x6771)), "long");
        shown.list().changeKey("URL1", QString("\002x\003"));
        QVERIFY(shown.list().SaveFile());
        ShownList again(contentOf(shown.path()));
        QCOMPARE(again.all(), shown.all());
        QVERIFY(again.list().has("x"));
        QCOMPARE(again.all().size(), 8);
        QVERIFY(isTrustedLine(contentOf(shown.path())));
    }
};

QTEST_MAIN(CamListTroubleTest)
#include "tst_CamListTrouble.moc"
