#pragma once

#include <QLabel>

/// One line of plain text across a strip: the viewer's status line (`lbl`) and its URL banner
/// (`lblURl`). A text too long for the strip ends in an ellipsis; the Tag keeps it whole.
class ElidedLabel : public QLabel
{
    Q_OBJECT
    Q_PROPERTY(QString Tag READ Tag)

public:
    explicit ElidedLabel(QWidget* parent);

    /// Replaces what is shown. Left-aligned unless `centred`.
    void ShowStatusText(const QString& text, bool centred = false);

    /// The text last shown.
    QString Tag() const { return text(); }
    void clearTag() { clear(); }

signals:
    /// A click with the primary button.
    void Click();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
};
