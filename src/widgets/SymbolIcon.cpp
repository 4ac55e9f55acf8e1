#include "widgets/SymbolIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

#include <algorithm>

/// Icons that lie in a static library are there only once somebody asks for them by this name,
/// which the macro can do outside of every namespace alone.
static void registerIcons()
{
    Q_INIT_RESOURCE(pevora);
}

namespace {

constexpr QByteArrayView colourWord = "currentColor";

/// How much of a coloured icon is left where it is disabled.
constexpr double disabledOpacity = 0.4;

QColor paletteColour(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::ButtonText);
    case QIcon::Selected:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    default:
        return palette.color(QPalette::Active, QPalette::ButtonText);
    }
}

class SymbolEngine : public QIconEngine
{
public:
    SymbolEngine(const QString& name, const QByteArray& svg)
        : m_name(name)
        , m_svg(svg)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const QColor colour = paletteColour(mode);
        QByteArray svg = m_svg;
        svg.replace(colourWord, colour.name(QColor::HexRgb).toLatin1());
        QSvgRenderer renderer(svg);

        const int side = std::min(rect.width(), rect.height());
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        painter->save();
        if (m_svg.contains(colourWord))
            painter->setOpacity(painter->opacity() * double(colour.alphaF()));
        else if (mode == QIcon::Disabled)
            painter->setOpacity(painter->opacity() * disabledOpacity);
        renderer.render(painter, square);
        painter->restore();
    }

    /// `size` is in device pixels.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        if (pixmap.isNull())
            return pixmap;
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new SymbolEngine(*this); }

    QString iconName() override { return m_name; }

private:
    QString m_name;
    QByteArray m_svg;
};

} // namespace

QIcon symbolIcon(const QString& name)
{
    registerIcons();
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // It is the program's own drawing, parsed when it is painted and no sooner.
    return QIcon(new SymbolEngine(name, file.readAll()));
}
