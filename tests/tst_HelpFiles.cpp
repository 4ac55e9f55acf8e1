// The pages of docs/help: that they are whole, lead to each other and to nothing outside, and where
// the build and an installation leave them.

#include "shared/AppFolder.h"
#include "shared/HelpPages.h"
#include "support/Paths.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

#include <QXmlStreamReader>

namespace {

/// What a page refers to by `href`, `src` and the like, and what can be referred to in it.
struct Page
{
    QString error;
    QString language;
    QString title;
    QStringList headings;
    QStringList references;
    QStringList anchors;
    QSet<QString> elements;
    QSet<QString> attributes;
};

Page readPage(const QString& path)
{
    Page page;
    QXmlStreamReader reader(contentOf(path));
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        const QString name = reader.name().toString();
        page.elements << name;
        for (const auto& attribute : reader.attributes()) {
            const QString key = attribute.name().toString();
            page.attributes << key;
            if (key == "id")
                page.anchors << attribute.value().toString();
            else if (QStringList{"href", "src", "srcset", "action", "data"}.contains(key))
                page.references << attribute.value().toString();
            else if (key == "lang" && name == "html")
                page.language = attribute.value().toString();
        }
        if (name == "title")
            page.title = reader.readElementText().trimmed();
        else if (name == "h1")
            page.headings << reader.readElementText().trimmed();
    }
    page.error = reader.errorString();
    return page;
}

QString pathOf(const QString& page)
{
    return sourcePath("docs/help/") + page;
}

const QStringList Pages = {"index.html", "watching.html", "headers.html",
                           "lists.html", "movies.html",   "directory.html"};

} // namespace

class HelpFilesTest : public QObject
{
    Q_OBJECT
private slots:
    void thereIsNoOtherFile()
    {
        QStringList expected = Pages;
        expected << "style.css";
        expected.sort();
        QCOMPARE(namesIn(sourcePath("docs/help")), expected);
        QVERIFY(Pages.contains(StartHelpPage) && Pages.contains(HeaderHelpPage));
    }

    void pagesAreWhole_data() { pages(); }
    void pagesAreWhole()
    {
        QFETCH(QString, page);
        QVERIFY(contentOf(pathOf(page)).startsWith("<!DOCTYPE html>\n"));
        const Page read = readPage(pathOf(page));
        QCOMPARE(read.error, "");
        QCOMPARE(read.language, "en");
        QVERIFY(read.title.contains("Pevora"));
        QCOMPARE(read.headings.size(), 1);
        QVERIFY(!read.headings.first().isEmpty());
        QCOMPARE(QSet(read.anchors.begin(), read.anchors.end()).size(), read.anchors.size());
    }

    void theyRunNothing_data() { pages(); }
    void theyRunNothing()
    {
        QFETCH(QString, page);
        const Page read = readPage(pathOf(page));
        const QSet<QString> active = {"script", "iframe", "object", "embed", "form", "style"};
        QVERIFY(!read.elements.intersects(active));
        for (const QString& attribute : read.attributes)
            QVERIFY2(!attribute.startsWith("on") && attribute != "style", qPrintable(attribute));
    }

    void everyLinkLeadsSomewhere_data() { pages(); }
    void everyLinkLeadsSomewhere()
    {
        QFETCH(QString, page);
        const QDir folder(sourcePath("docs/help"));
        for (const QString& reference : readPage(pathOf(page)).references) {
            // A file beside the page: neither another site nor another folder.
            static const QRegularExpression here("^([a-z]+\\.(?:html|css))?(?:#([a-z]+))?$");
            const auto parts = here.match(reference);
            QVERIFY2(parts.hasMatch() && !reference.isEmpty(), qPrintable(reference));
            const QString file = parts.captured(1).isEmpty() ? page : parts.captured(1);
            QVERIFY2(folder.exists(file), qPrintable(reference));
            const QString anchor = parts.captured(2);
            QVERIFY2(anchor.isEmpty() || readPage(pathOf(file)).anchors.contains(anchor),
                     qPrintable(reference));
        }
    }

    void eachLeadsToAllOthers_data() { pages(); }
    void eachLeadsToAllOthers()
    {
        QFETCH(QString, page);
        const QStringList references = readPage(pathOf(page)).references;
        for (const QString& other : Pages)
            QVERIFY2(references.contains(other), qPrintable(other));
        QVERIFY(references.contains("style.css"));
    }

    void theStyleNeedsNothingElse()
    {
        const QByteArray style = contentOf(pathOf("style.css"));
        QVERIFY(style.contains("prefers-color-scheme: dark"));
        QVERIFY(!style.contains("url(") && !style.contains("@import"));
    }

    void theBuildLeavesThemBesideTheProgram()
    {
        const QString program = QFileInfo(pevoraProgram()).path();
        const QDir folder(QFileInfo(helpPageLocation(program, StartHelpPage)).path());
        QVERIFY(folder.path().startsWith(program + '/'));
        for (const QString& file : namesIn(sourcePath("docs/help")))
            QCOMPARE(contentOf(folder.filePath(file)), contentOf(pathOf(file)));
    }

    void anInstallationHasThem()
    {
        const QTemporaryDir scratch;
        const QString prefix = scratch.filePath("usr");
        QProcess install;
        install.setProcessChannelMode(QProcess::MergedChannels);
        install.start("cmake",
                      {"--install", QFileInfo(pevoraProgram()).path(), "--prefix", prefix});
        QVERIFY(install.waitForFinished(60'000));
        QVERIFY2(install.exitStatus() == QProcess::NormalExit && install.exitCode() == 0,
                 install.readAll());

        const QString program = prefix + "/bin";
        QVERIFY(QFileInfo(program + "/pevora").isExecutable());
        QVERIFY(QFileInfo(prefix + "/share/applications/pevora.desktop").isFile());
        QVERIFY(QFileInfo(prefix + "/share/icons/hicolor/scalable/apps/pevora.svg").isFile());
        for (const QString& page : Pages) {
            const QString installed = helpPageLocation(program, page);
            QCOMPARE(installed, prefix + "/share/pevora/help/" + page);
            QCOMPARE(contentOf(installed), contentOf(pathOf(page)));
        }
        // It knows that it is installed, and keeps its own files elsewhere.
        const QString data = scratch.filePath("data");
        QCOMPARE(applicationFolder(program, data), data);
    }

private:
    static void pages()
    {
        const Rows<QString> row("page");
        for (const QString& page : Pages)
            row(qPrintable(page), page);
    }
};

QTEST_GUILESS_MAIN(HelpFilesTest)
#include "tst_HelpFiles.moc"
