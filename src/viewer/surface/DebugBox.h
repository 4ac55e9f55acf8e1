#pragma once

#include <QPlainTextEdit>

/// The hidden box (`txtDebug`) that receives a copy of every received chunk while it is visible.
class DebugBox : public QPlainTextEdit
{
    Q_OBJECT

public:
    /// Lines are broken after so many characters, and only so many lines are kept.
    static constexpr int LineLength = 200;
    static constexpr int MaxLines = 5'000;

    explicit DebugBox(QWidget* parent);

    /// Appends `chunk`, each byte as its Latin-1 character, control characters (other than line
    /// feeds, with or without a carriage return before them) as a middle dot. Ignored while the
    /// box is hidden. Of a chunk of over half a million bytes only the end is shown.
    void addChunk(const QByteArray& chunk);

    /// Empties the box, for the next fetch.
    void startAnew();

protected:
    void showEvent(QShowEvent* event) override;

private:
    /// Chunks end anywhere: a line, and a line break of two bytes, goes on in the next one.
    int m_column = 0;
    bool m_returnWaits = false;
};
