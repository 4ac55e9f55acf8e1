// What the build does against faults that nobody has found yet, seen in what was built.

#include "support/Paths.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace {

/// What readelf prints; empty where it fails.
QString readelf(const QStringList& arguments)
{
    QProcess tool;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C");
    tool.setProcessEnvironment(environment);
    tool.start("readelf", arguments);
    if (!tool.waitForFinished(HangMs) || tool.exitCode() != 0)
        return {};
    return QString::fromUtf8(tool.readAllStandardOutput());
}

bool isX86()
{
    return QSysInfo::buildCpuArchitecture() == "x86_64" ||
           QSysInfo::buildCpuArchitecture() == "i386";
}

} // namespace

class HardeningTest : public QObject
{
    Q_OBJECT
private slots:
    void theProgramIsHardened_data()
    {
        const Rows<QString, QString> row("part", "found");
        row("any address (PIE)", "--file-header", "Type:\\s+DYN");
        row("any address, said", "--dynamic", "FLAGS_1.*\\bPIE\\b");
        row("all bound at the start", "--dynamic", "\\(FLAGS\\).*BIND_NOW");
        row("read-only once bound (RELRO)", "--program-headers", "\\bGNU_RELRO\\b");
        row("no code on the stack", "--program-headers", "\\bGNU_STACK(\\s+0x[0-9a-f]+)+\\s+RW\\s");
        row("a guard in each frame", "--dyn-syms", "UND __stack_chk_fail\\b");
    }

    void theProgramIsHardened()
    {
        QFETCH(QString, part);
        QFETCH(QString, found);
        const QString told = readelf({"--wide", part, pevoraProgram()});
        QVERIFY2(QRegularExpression(found).match(told).hasMatch(), qPrintable(told.left(10'000)));
    }

    void copiesAreChecked()
    {
        const QString told = readelf({"--wide", "--dyn-syms", pevoraProgram()});
        static const QRegularExpression checked("UND __(?!stack)\\w+_chk\\b");
        QVERIFY(!told.isEmpty());
        QCOMPARE(checked.match(told).hasMatch(), isFortified());
    }

    /// Looked for in the library: the system's own start files, which the program has too, may lack
    /// the note, and then it has none.
    void jumpsLeadToMarksAlone()
    {
        const QString told = readelf({"--wide", "--notes", coreLibrary()});
        const auto files = told.count("File: ");
        QVERIFY(files > 5);
        QCOMPARE(told.count("x86 feature: IBT, SHSTK"), isX86() ? files : 0);
    }

    /// What leaves no trace in what is built.
    void everySourceIsCompiledSo()
    {
        const QJsonArray commands = QJsonDocument::fromJson(contentOf(compileCommands())).array();
        int sources = 0;
        for (const auto& one : commands) {
            const QString command = one.toObject()["command"].toString();
            if (!command.contains("/pevora_core.dir/") && !command.contains("/pevora.dir/"))
                continue;
            ++sources;
            QVERIFY2(command.contains(" -fstack-clash-protection "), qPrintable(command));
            QVERIFY2(command.contains(" -fstack-protector-strong "), qPrintable(command));
            QCOMPARE(command.contains(" -D_FORTIFY_SOURCE=2 "), isFortified());
        }
        QVERIFY(sources > 5);
    }
};

QTEST_GUILESS_MAIN(HardeningTest)
#include "tst_Hardening.moc"
