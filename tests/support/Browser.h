#pragma once

#include <QDesktopServices>
#include <QStringList>
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
