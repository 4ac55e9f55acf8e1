#pragma once

#include "cameras/CameraListLine.h"

#include <QByteArray>

#include <optional>

/// More cameras are not taken from one answer.
inline constexpr qsizetype MostFoundCameras = 100'000;

/// The cameras in `answer`, what the directory's server sent from its status line on: its body,
/// which may be chunked, is a camera list line, perhaps with a line end behind it. Nothing where
/// the directory says that it found none; an empty list for a body that holds no whole camera, such
/// as a page of HTML. The status is not looked at. The same camera may be there more than once.
std::optional<QList<CameraRecord>> readDirectoryAnswer(const QByteArray& answer);

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

/// Nothing where there is no fault in `answer`.
std::optional<DirectoryFault> faultOfDirectoryAnswer(const QByteArray& answer);
