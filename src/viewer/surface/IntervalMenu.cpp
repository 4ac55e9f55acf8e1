#include "viewer/surface/IntervalMenu.h"

#include "widgets/MessageQueue.h"

#include <QActionGroup>
#include <QInputDialog>
#include <QLineEdit>
#include <QRegularExpression>

#include <cmath>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

struct IntervalRow
{
    int index;
    const char* caption;
};

/// Kept: "sec" and "secs" here, "sec(s)" for the custom interval.
constexpr IntervalRow IntervalRows[] = {
    {1, "1 sec"},    {5, "5 secs"},   {10, "10 secs"}, {15, "15 secs"},
    {30, "30 secs"}, {45, "45 secs"}, {60, "60 secs"}, {IntervalMenu::CustomIndex, "Custom"}};
constexpr int CheckedAtStart = 30;

} // namespace

TypedInterval readInterval(const QString& text)
{
    static const QRegularExpression number(uR"(^\s*[+-]?(\d+\.?\d*|\.\d+)([eE][+-]?\d+)?\s*$)"_s);
    if (!number.match(text).hasMatch())
        return {};
    const double value = std::nearbyint(text.trimmed().toDouble());
    using Bounds = std::numeric_limits<qint16>;
    if (!(value >= Bounds::min() && value <= Bounds::max()))
        return {true, {}};
    return {true, static_cast<int>(value)};
}

IntervalMenu::IntervalMenu(QWidget* parent)
    : QMenu(parent)
    , m_messages(new MessageQueue(parent))
{
    setObjectName(u"mnuTmr"_s);
    setToolTipsVisible(true);
    auto* group = new QActionGroup(this);
    for (const IntervalRow& row : IntervalRows) {
        auto* one = addAction(QString::fromLatin1(row.caption));
        one->setObjectName(u"mnuTmrSel(%1)"_s.arg(row.index));
        one->setData(row.index);
        one->setCheckable(true);
        one->setChecked(row.index == CheckedAtStart);
        group->addAction(one);
        m_items.append(one);
        connect(one, &QAction::triggered, this, [this, index = row.index] { choose(index); });
    }
    addSeparator();
    m_keep = addAction(u"Keep Refreshing"_s);
    m_keep->setObjectName(u"mnuTmrKeep"_s);
    m_keep->setCheckable(true);
    m_keep->setToolTip(u"Go on refreshing after errors and refused answers"_s);
    connect(m_keep, &QAction::triggered, this, &IntervalMenu::KeepRefreshingChosen);
}

bool IntervalMenu::KeepRefreshing() const
{
    return m_keep->isChecked();
}

void IntervalMenu::setKeepRefreshing(bool on)
{
    m_keep->setChecked(on);
}

QAction* IntervalMenu::item(int index) const
{
    for (auto* one : m_items) {
        if (one->data().toInt() == index)
            return one;
    }
    return nullptr;
}

void IntervalMenu::choose(int index)
{
    item(index)->setChecked(true);
    if (index == CustomIndex) {
        askForInterval();
        return;
    }
    item(CustomIndex)->setText(u"Custom"_s);
    emit IntervalChosen(index);
}

void IntervalMenu::askForInterval()
{
    auto* dialog = new QInputDialog(parentWidget());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(u"Custom Refresh"_s);
    dialog->setLabelText(u"Enter a Refresh rate in seconds."_s);
    dialog->setTextValue(u"60"_s);
    connect(dialog, &QInputDialog::textValueSelected, this, &IntervalMenu::customAnswer);
    dialog->open();
}

void IntervalMenu::customAnswer(const QString& answer)
{
    if (answer.isEmpty())
        return;
    const auto [isNumber, seconds] = readInterval(answer);
    if (!seconds) {
        m_messages->tell({isNumber ? QMessageBox::Critical : QMessageBox::Information, u"Error"_s,
                          isNumber ? u"Number is too large, please choose a small number."_s
                                   : u"Must be a number!"_s});
        return;
    }
    showCustom(*seconds);
    emit IntervalChosen(*seconds);
}

void IntervalMenu::showCustom(int seconds)
{
    item(CustomIndex)->setText(QString::number(seconds) + " sec(s)"_L1);
}

void IntervalMenu::setInterval(int seconds)
{
    QAction* preset = seconds == CustomIndex ? nullptr : item(seconds);
    if (!preset)
        showCustom(seconds);
    (preset ? preset : item(CustomIndex))->setChecked(true);
}
