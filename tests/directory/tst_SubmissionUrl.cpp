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
};

QTEST_GUILESS_MAIN(SubmissionUrlTest)
#include "tst_SubmissionUrl.moc"
