#pragma once

#include <QString>

#include <optional>

/// Truth values are stored as the words "True" and "False". Any other text (letter case aside)
/// reads as nothing.
inline std::optional<bool> readTruthValue(const QString& text)
{
    if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        return false;
    return std::nullopt;
}

inline QString truthValueText(bool value)
{
    return value ? QStringLiteral("True") : QStringLiteral("False");
}
