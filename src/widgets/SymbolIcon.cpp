#include "widgets/SymbolIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QSvgRenderer>

#include <algorithm>
#include <vector>

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

/// Draws an icon once for each size and colour, and keeps that: a tree paints the same one in each
/// of its rows, again and again.
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
        const int side = std::min(rect.width(), rect.height());
        const double ratio = painter->device()->devicePixelRatioF();
        QPixmap pixmap = drawn(qRound(side * ratio), mode);
        pixmap.setDevicePixelRatio(ratio);
        QRect square(0, 0, side, side);
        square.moveCenter(rect.center());
        painter->drawPixmap(square.topLeft(), pixmap);
    }

    /// `size` is in device pixels.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        if (size.width() == size.height())
            return drawn(size.width(), mode);
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
    /// What is kept was drawn for these.
    struct Drawn
    {
        int side;
        QIcon::Mode mode;
        QRgb colour;
        QPixmap pixmap;
    };

    /// The icon `side` device pixels wide and high, in the colours of now.
    QPixmap drawn(int side, QIcon::Mode mode)
    {
        const QColor colour = paletteColour(mode);
        const QRgb rgba = colour.rgba();
        const auto kept = std::ranges::find_if(m_drawn, [&](const Drawn& one) {
            return one.side == side && one.mode == mode && one.colour == rgba;
        });
        if (kept != m_drawn.end())
            return kept->pixmap;
        // Sizes and colours change seldom; whoever changes them again and again costs no memory.
        if (m_drawn.size() == MostKept)
            m_drawn.clear();
        m_drawn.push_back({side, mode, rgba, draw(side, mode, colour)});
        return m_drawn.back().pixmap;
    }

    QPixmap draw(int side, QIcon::Mode mode, const QColor& colour) const
    {
        QPixmap pixmap(side, side);
        if (pixmap.isNull())
            return pixmap;
        pixmap.fill(Qt::transparent);
        QByteArray svg = m_svg;
        svg.replace(colourWord, colour.name(QColor::HexRgb).toLatin1());
        QSvgRenderer renderer(svg);
        QPainter painter(&pixmap);
        if (m_svg.contains(colourWord))
            painter.setOpacity(double(colour.alphaF()));
        else if (mode == QIcon::Disabled)
            painter.setOpacity(disabledOpacity);
        renderer.render(&painter, pixmap.rect());
        return pixmap;
    }

    static constexpr std::size_t MostKept = 8;

    QString m_name;
    QByteArray m_svg;
    std::vector<Drawn> m_drawn;
};

} // namespace

QIcon symbolIcon(const QString& name)
{
    registerIcons();
    QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // It is the program's own drawing, parsed when it is first painted and no sooner.
    return QIcon(new SymbolEngine(name, file.readAll()));
}
