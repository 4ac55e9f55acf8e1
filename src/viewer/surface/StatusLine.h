#pragma once

#include "shared/Timer.h"

#include <QObject>
#include <QString>

class ElidedLabel;

/// What the status line (`lbl`) says: the texts of fetches, and for three seconds, over them, a
/// fault. What a fetch says meanwhile is kept, and is seen when the fault goes.
class StatusLine : public QObject
{
    Q_OBJECT

public:
    static constexpr int FaultMs = 3'000;

    StatusLine(ElidedLabel& lbl, QObject* parent);

    /// Replaces the text; whether it is seen stays as it was.
    void setText(const QString& text);
    void setVisible(bool visible);
    void hide() { setVisible(false); }

    /// Shows `text` also where the status line is hidden; in place of a fault, too.
    void tell(const QString& text);

    /// Shows `fault` also where the status line is hidden; until endFault(), at most three seconds.
    void tellFault(const QString& fault);
    /// Nothing where no fault is on show.
    void endFault();

private:
    ElidedLabel& m_lbl;
    Timer m_tmrFault;
    /// What is under a fault.
    QString m_text;
    bool m_visible = true;
};
