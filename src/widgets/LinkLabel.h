#pragma once

#include <QLabel>

/// A label that opens something: by a click, or by Enter or the space bar where the keyboard is. It
/// looks like a link and its text is plain.
class LinkLabel : public QLabel
{
    Q_OBJECT

public:
    LinkLabel(const QString& text, QWidget* parent);

signals:
    void Clicked();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};
