#include "shared/HelpPages.h"
#include "support/ScratchFile.h"

using namespace Qt::Literals::StringLiterals;

class HelpPagesTest : public QObject
{
    Q_OBJECT
private slots:
    void aPortableCopyHasThemBesideItself()
    {
        const QTemporaryDir scratch;
        const QString page = made(scratch, u"copy/help/index.html"_s);
        QCOMPARE(helpPageLocation(scratch.filePath(u"copy"_s), StartHelpPage), page);
        QCOMPARE(helpPageLocation(scratch.filePath(u"copy/"_s), StartHelpPage), page);
    }

    void anInstalledProgramHasThemInItsSharedFolder()
    {
        const QTemporaryDir scratch;
        const QString page = made(scratch, u"usr/share/pevora/help/headers.html"_s);
        QCOMPARE(helpPageLocation(scratch.filePath(u"usr/bin"_s), HeaderHelpPage), page);
        // Also where something of that name stands beside the program.
        made(scratch, u"usr/bin/help/headers.html"_s);
        QCOMPARE(helpPageLocation(scratch.filePath(u"usr/bin"_s), HeaderHelpPage), page);
    }

    void eachPageIsLookedFor()
    {
        const QTemporaryDir scratch;
        made(scratch, u"usr/share/pevora/help/index.html"_s);
        const QString page = made(scratch, u"usr/bin/help/headers.html"_s);
        QCOMPARE(helpPageLocation(scratch.filePath(u"usr/bin"_s), HeaderHelpPage), page);
    }

    void withoutOneItSaysWhereItWouldBe()
    {
        const QTemporaryDir scratch;
        const QString expected = scratch.filePath(u"copy/help/index.html"_s);
        QCOMPARE(helpPageLocation(scratch.filePath(u"copy"_s), StartHelpPage), expected);
        // A folder of that name is no page.
        QVERIFY(QDir(scratch.path()).mkpath(u"share/pevora/help/index.html"_s));
        QCOMPARE(helpPageLocation(scratch.filePath(u"copy"_s), StartHelpPage), expected);
        QCOMPARE(namesIn(scratch.path()), QStringList{u"share"_s});
    }

private:
    /// Makes an empty file; gives its path.
    static QString made(const QTemporaryDir& scratch, const QString& name)
    {
        const QString path = scratch.filePath(name);
        if (!QDir().mkpath(QFileInfo(path).path()))
            qFatal("no folder for %s", qPrintable(path));
        writeFile(path, {});
        return path;
    }
};

QTEST_GUILESS_MAIN(HelpPagesTest)
#include "tst_HelpPages.moc"
