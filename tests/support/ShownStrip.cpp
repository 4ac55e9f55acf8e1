#include "support/ShownStrip.h"

#include "support/Pictures.h"
#include "support/Waiting.h"

Still numberedStill(int number)
{
    return Still::fromImage(plainImage({8, 6}, QColor::fromRgb(QRgb(number))));
}

int numberOf(const Still& picture)
{
    return picture.isNull() ? -1 : int(picture.image().pixel(0, 0) & RGB_MASK);
}

ImageList numberedList(int first, int last)
{
    ImageList list;
    for (int n = first; n <= last; ++n)
        list.Add(numberedStill(n));
    return list;
}

ShownStrip::ShownStrip(QSize size)
{
    window.resize(1000, 800);
    bar().setFixedWidth(BarWidth);
    view.resize(size);
    window.show();
    if (!waitForActive(&window))
        qFatal("the window does not show");
}

QList<int> ShownStrip::numbers()
{
    QList<int> found;
    for (int n = 1; n <= view.ThumbCount(); ++n)
        found.append(numberOf(view.Picture(n)));
    return found;
}

QStringList ShownStrip::places()
{
    QStringList found;
    for (int i = 0; has(i); ++i) {
        if (img(i).isVisible() != lbl(i).isVisible())
            found.append(QString("caption %1 is not shown as its thumbnail").arg(i));
        if (!img(i).isVisible())
            continue;
        if (img(i).size() != ThumbCell::SizePx)
            found.append(QString("thumbnail %1 has another size").arg(i));
        if (lbl(i).pos() != img(i).pos() + QPoint(5, 64))
            found.append(QString("caption %1 is not below its thumbnail").arg(i));
        found.append(QString("%1,%2 %3").arg(img(i).x()).arg(img(i).y()).arg(lbl(i).text()));
    }
    return found;
}

bool ShownStrip::isInView(int i)
{
    const int top = img(i).mapTo(&view, QPoint(0, 0)).y();
    const int bottom = lbl(i).mapTo(&view, lbl(i).rect().bottomLeft()).y();
    return top >= 0 && bottom < view.height();
}

void ShownStrip::add(int first, int last)
{
    for (int n = first; n <= last; ++n)
        view.AddImage(numberedStill(n));
}

int ShownStrip::filled()
{
    int count = 0;
    for (const auto* cell : view.findChildren<ThumbCell*>())
        count += cell->isRendered() ? 1 : 0;
    return count;
}

bool ShownStrip::waitUntilFilled()
{
    return waitFor([this] { return filled() == view.ThumbCount(); });
}
