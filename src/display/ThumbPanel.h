#pragma once

#include <QWidget>

#include <vector>

class QLabel;
class ThumbCell;

/// The panel of a ThumbView (`picBack`): thumbnails `img` and their captions `lbl`, and the rule
/// by which they are placed, row by row from the left. The first pair is always there, maybe
/// hidden; the others come and go at the end.
///
/// Indices count from 0, positions and sizes are logical pixels of the panel. It does not scroll
/// and decodes nothing.
class ThumbPanel : public QWidget
{
    Q_OBJECT

public:
    static constexpr int ColumnStepPx = 90;
    static constexpr int RowStepPx = 80;
    static constexpr int FirstTopPx = 8;
    /// From a thumbnail's top left corner to its caption's.
    static constexpr QPoint CaptionOffsetPx{5, 64};

    struct Range
    {
        int first;
        int end; ///< Past the last.
    };

    explicit ThumbPanel(QWidget* parent);

    int count() const { return static_cast<int>(m_elements.size()); }
    ThumbCell* img(int i) const { return m_elements[static_cast<std::size_t>(i)].img; }

    /// The width that a row may fill; what is there stays where it is until `layOut`.
    void setRowWidth(int px) { m_rowWidth = px; }
    /// So high that all rows fit.
    int neededHeight() const { return m_nextTop + RowStepPx; }

    /// Makes a pair at the end, hidden and without a place.
    void append();
    /// Shows the last pair behind the one before it, in its row or the next.
    void placeLast() { place(count() - 1); }
    /// Destroys the last pair, which is not the first.
    void removeLast();
    void showFirst();
    void hideFirst();

    /// Places all but the first anew.
    void layOut();
    /// What is placed next goes behind the last that is there.
    void stepBack();
    /// What is placed next goes behind the first.
    void startAnew();

    /// How many stand in a full row.
    int columns() const;
    /// Those of the first `limit` thumbnails that have a part between `top` and `bottom`.
    Range between(int top, int bottom, int limit) const;

    /// Makes captions of `font`, or of a smaller one where they would not fit between the rows.
    void setCaptionFont(const QFont& font);

signals:
    void Pressed(int i);
    void Clicked(int i);
    void TabbedInto(int i);
    /// The pointer rests on a thumbnail or its caption.
    void TipWanted(int i, QPoint globalAt);
    /// Some thumbnail was painted without its pixels.
    void RenderingWanted();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Element
    {
        ThumbCell* img;
        QLabel* lbl;
    };

    bool opensRowAfter(const ThumbCell* previous) const;
    void place(int i);

    std::vector<Element> m_elements;
    int m_rowWidth = 0;
    int m_nextLeft = ColumnStepPx;
    int m_nextTop = FirstTopPx;
};
