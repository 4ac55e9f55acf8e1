#pragma once

#include <QObject>

#include <memory>

class QSystemTrayIcon;
class QWidget;

/// The program's one icon in the desktop's tray. Whether the desktop has a tray, and whether it
/// took the icon, is not told: without one nothing is shown, and a tray that comes later gets it.
class modSysTray : public QObject
{
    Q_OBJECT

public:
    explicit modSysTray(QObject* parent = nullptr);
    ~modSysTray() override;

    /// Puts the icon there, with the picture of `form`'s own window icon and `tip` as its tool
    /// tip, and hides `form`. One that is there already stays as it is.
    void AddTrayIcon(QWidget& form, const QString& tip);

    /// Takes the icon away; nothing where there is none.
    void RemoveTrayIcon();

    /// Whether a person finds the icon: it was added, and there is a tray on the desktop now.
    bool isReachable() const;

signals:
    /// The primary button was released on the icon. Other buttons, and the second press of a
    /// double click, are ignored.
    void Clicked();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void pressed();

    std::unique_ptr<QSystemTrayIcon> m_icon;
};
