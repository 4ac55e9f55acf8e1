// What goes to the directory when a camera is offered to it.

#include "cameras/EnteredCamera.h"
#include "directory/SubmissionUrl.h"
#include "support/Rows.h"

class SubmissionUrlTest : public QObject
{
    Q_OBJECT
private slots:
    void valuesAreEscaped_data()
    {
        const Rows<QString, QString> row("value", "escaped");
        row("nothing", "", "");
        row("blanks", "a b  c", "a+b++c");
        row("ampersand and equals sign", "A&B = C", "A%26B+%3D+C");
        // Kept: the directory cannot tell these from a blank or from what is escaped.
        row("plus and percent stay", "1+1 %26", "1+1+%26");
        row("all else stays", QStringLiteral("?#/\x01\u00E9\u6771"),
            QStringLiteral("?#/\x01\u00E9\u6771"));
    }

    void valuesAreEscaped()
    {
        QFETCH(QString, value);
        QTEST(EscapeQueryValue(value), "escaped");
    }

    void theAddressHoldsAllOfTheCamera_data()
    {
        const Rows<QString, QString> row("header", "address");
        row("without a header", "",
            "http://localhost/pevora/?n=Big+Ben&a=http://h/a.jpg?x%3D1%26y&c=My+Sights");
        row("with one", "Cookie: a=1",
            "http://localhost/pevora/"
            "?n=Big+Ben&a=http://h/a.jpg?x%3D1%26y\1Cookie:+a%3D1&c=My+Sights");
    }

    void theAddressHoldsAllOfTheCamera()
    {
        QFETCH(QString, header);
        QTEST(submissionUrl("http://localhost",
                            {"Big Ben", "http://h/a.jpg?x=1&y", header, "My Sights"}),
              "address");
    }

    void noFieldEndsAnother_data()
    {
        const Rows<EnteredCamera, QString> row("camera", "fields");
        row("in the name", {"a&c=x\r\nb", "h/a", "", "c"}, "n=a%26c%3Dx&a=h/a&c=c");
        row("in the address", {"n", "h/?x=1&c=2\nb", "", "c"}, "n=n&a=h/?x%3D1%26c%3D2&c=c");
        row("in the header", {"n", "h/a", "X: 1&c=2\rY: 2", "c"}, "n=n&a=h/a\1X:+1%26c%3D2&c=c");
        row("in the category", {"n", "h/a", "", "c HTTP/1.0\r\nX: y"}, "n=n&a=h/a&c=c+HTTP/1.0");
    }

    void noFieldEndsAnother()
    {
        QFETCH(EnteredCamera, camera);
        QFETCH(QString, fields);
        QCOMPARE(submissionUrl("http://localhost", camera), "http://localhost/pevora/?" + fields);
    }
};

QTEST_GUILESS_MAIN(SubmissionUrlTest)
#include "tst_SubmissionUrl.moc"
