#pragma once

#include "display/ThumbCell.h"
#include "display/ThumbView.h"

#include <QLabel>
#include <QList>
#include <QScrollBar>
#include <QStringList>

/// A picture that bears a number, and the number of such a picture; -1 for a null still.
Still numberedStill(int number);
int numberOf(const Still& picture);

/// Pictures that bear the numbers `first` to `last`.
ImageList numberedList(int first, int last);

/// A thumbnail strip in a window of its own, on screen, with a scroll bar 17 pixels wide.
class ShownStrip
{
public:
    static constexpr int BarWidth = 17;

    explicit ShownStrip(QSize size);

    /// Whether there is a thumbnail with this array index, visible or not.
    bool has(int i) { return view.findChild<ThumbCell*>(QString("img(%1)").arg(i)); }
    /// Thumbnail and caption of an array index; ends the program where there is none.
    ThumbCell& img(int i) { return part<ThumbCell>(QString("img(%1)").arg(i)); }
    QLabel& lbl(int i) { return part<QLabel>(QString("lbl(%1)").arg(i)); }
    QWidget& panel() { return part<QWidget>("picBack"); }
    QScrollBar& bar() { return part<QScrollBar>("vs"); }

    /// The numbers of the pictures 1 to ThumbCount.
    QList<int> numbers();
    /// Of each visible thumbnail in order, "LEFT,TOP CAPTION"; what is out of order is named.
    QStringList places();
    /// Whether thumbnail `i` and its caption are wholly in view.
    bool isInView(int i);

    /// Adds pictures that bear the numbers `first` to `last`.
    void add(int first, int last);
    /// Waits until each thumbnail shows its picture; false where that does not come within 30 s.
    bool waitUntilFilled();
    /// How many thumbnails show a picture.
    int filled();

    QWidget window;
    ThumbView view{&window};

private:
    template<typename T>
    T& part(const QString& name)
    {
        auto* found = view.findChild<T*>(name);
        if (!found)
            qFatal("the strip has no %s", qPrintable(name));
        return *found;
    }
};
