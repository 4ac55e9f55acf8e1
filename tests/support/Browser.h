#pragma once

#include <QDesktopServices>
#include <QRegularExpression>
#include <QStringList>
#include <QTest>
#include <QUrl>

/// Stands in for the user's browser, as long as it lives.
class Browser : public QObject
{
    Q_OBJECT

public:
    explicit Browser(const QStringList& schemes = {QStringLiteral("http")})
        : m_schemes(schemes)
    {
        for (const QString& scheme : m_schemes)
            QDesktopServices::setUrlHandler(scheme, this, "open");
    }
    ~Browser() override
    {
        for (const QString& scheme : m_schemes)
            QDesktopServices::unsetUrlHandler(scheme);
    }

    QList<QUrl> opened;

public slots:
    void open(const QUrl& url) { opened << url; }

private:
    QStringList m_schemes;
};

/// Stands in for a desktop without a browser: the one page of `scheme` that is to be opened while
/// it lives is opened by nobody.
class NoBrowser : public QObject
{
    Q_OBJECT

public:
    explicit NoBrowser(const QString& scheme = QStringLiteral("http"))
        : m_scheme(scheme)
    {
        // Qt says that there is no such slot; the test fails where no page was asked for.
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("No such method")));
        QDesktopServices::setUrlHandler(m_scheme, this, "nobody");
    }
    ~NoBrowser() override { QDesktopServices::unsetUrlHandler(m_scheme); }

private:
    QString m_scheme;
};
