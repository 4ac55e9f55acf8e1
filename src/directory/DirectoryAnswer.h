#pragma once

#include "cameras/CameraListLine.h"

#include <QByteArray>

#include <optional>

/// More cameras are not taken from one answer.
inline constexpr qsizetype MostFoundCameras = 100'000;

/// Why an answer is not to be read.
struct DirectoryFault
{
    enum class Kind {
        /// Its status is not 200. One without a status is read.
        OtherStatus,
        /// Fewer bytes came than it announces, not the last chunk, or not the end of its head.
        Incomplete,
        /// Nothing came at all.
        Nothing,
    };

    Kind kind;
    /// Code and reason as the server wrote them, on one line and not too long to be shown.
    QString status = {};

    bool operator==(const DirectoryFault&) const = default;
};

/// What the directory's server sent, from its status line on: its body, which may be chunked, is a
/// camera list line, perhaps with a UTF-8 byte order mark before it and a line end behind it.
class DirectoryAnswer
{
public:
    explicit DirectoryAnswer(const QByteArray& bytes);

    /// Nothing where there is no fault in the answer.
    const std::optional<DirectoryFault>& fault() const { return m_fault; }

    /// The cameras of its body, whatever fault it has. Nothing where the directory says that it
    /// found none; an empty list for a body that holds no whole camera, such as a page of HTML. The
    /// same camera may be there more than once.
    std::optional<QList<CameraRecord>> cameras() const;

private:
    std::optional<DirectoryFault> m_fault;
    QByteArray m_body;
};
