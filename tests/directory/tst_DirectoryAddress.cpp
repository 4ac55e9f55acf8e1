#include "directory/DirectoryAddress.h"
#include "settings/Ini.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

class DirectoryAddressTest : public QObject
{
    Q_OBJECT
private slots:
    void withoutPreferencesItIsTheBuildsOwn()
    {
        const ScratchFile file("pref.ini");
        const QString own = directoryAddress(file.path());
        QVERIFY2(own.startsWith("http://"), qPrintable(own));
        QVERIFY(!own.endsWith('/'));
        for (const char* content :
             {"[DIRECTORY]\r\nHOST=\r\n", "[DIRECTORY]\r\nHOST=http://\r\n",
              "[DIRECTORY]\r\nHOST=//\r\n", "[DIRECTORY]\r\nHOST=https://\r\n",
              "[MAIN]\r\nHOST=elsewhere.example\r\n", "[DIRECTORY]\r\nPORT=8080\r\n"}) {
            const ScratchFile other("pref.ini");
            other.setContent(content);
            QCOMPARE(directoryAddress(other.path()), own);
        }
    }

    void thePreferencesOverrideIt_data()
    {
        const Rows<QByteArray, QString> named("host", "base");
        const auto row = [&](const char* host, const char* base) { named(host, host, base); };
        row("http://cams.example", "http://cams.example");
        row("http://cams.example/", "http://cams.example");
        row("http://cams.example//", "http://cams.example");
        row("cams.example", "http://cams.example");
        row("HTTP://cams.example", "http://cams.example");
        row("\"  cams.example  \"", "http://cams.example");
        row("127.0.0.1", "http://127.0.0.1");
        row("[::1]", "http://[::1]");
        row("http://cams.example/ours/", "http://cams.example/ours");
        row("https://cams.example", "https://cams.example");
    }

    void thePreferencesOverrideIt()
    {
        QFETCH(QByteArray, host);
        const ScratchFile file("pref.ini");
        file.setContent("[directory]\r\nHost=" + host + "\r\n");
        QTEST(directoryAddress(file.path()), "base");
    }

    void thePreferencesAreOnlyRead()
    {
        const ScratchFile missing("pref.ini");
        directoryAddress(missing.path());
        QVERIFY(FlushINI());
        QVERIFY(!QFile::exists(missing.path()));

        const ScratchFile file("pref.ini");
        const QByteArray content = "[MAIN]\nA=1\n;x\n[DIRECTORY]\nhost=HTTP://a.example/";
        file.setContent(content);
        QCOMPARE(directoryAddress(file.path()), "http://a.example");
        QVERIFY(FlushINI());
        QCOMPARE(file.content(), content);
    }
};

QTEST_GUILESS_MAIN(DirectoryAddressTest)
#include "tst_DirectoryAddress.moc"
