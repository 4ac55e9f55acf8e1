#pragma once

#include <QList>
#include <QMenu>

#include <optional>

class MessageQueue;

/// The menu of the timer button (`mnuTmr`): the refresh intervals (`mnuTmrSel(i)`, i the interval
/// in seconds), a custom one that is asked for, and whether refreshing goes on after errors.
class IntervalMenu : public QMenu
{
    Q_OBJECT

public:
    /// Number of the entry that asks for an interval.
    static constexpr int CustomIndex = 99;

    explicit IntervalMenu(QWidget* parent);

    /// Checks the entry of that interval, the custom one with its caption where none is. Reports
    /// nothing.
    void setInterval(int seconds);

    /// The check of "Keep Refreshing". Setting it reports nothing.
    bool KeepRefreshing() const;
    void setKeepRefreshing(bool on);

signals:
    /// Another interval, in seconds, from -32768 to 32767.
    void IntervalChosen(int seconds);
    void KeepRefreshingChosen(bool on);

private:
    void choose(int index);
    void askForInterval();
    void customAnswer(const QString& answer);
    void showCustom(int seconds);
    QAction* item(int index) const;

    MessageQueue* m_messages;
    QList<QAction*> m_items;
    QAction* m_keep;
};

/// How a typed interval reads.
struct TypedInterval
{
    /// It is a number at all: digits with an optional sign, decimal point and exponent.
    bool isNumber = false;
    /// Rounded with ties to even; nothing where that leaves -32768..32767.
    std::optional<int> seconds;
};
TypedInterval readInterval(const QString& text);
