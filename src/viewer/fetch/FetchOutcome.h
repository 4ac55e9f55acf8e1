#pragma once

#include <QMetaType>
#include <QString>

/// What came of a fetch, for whoever explains it to a person. Texts of the server are one line
/// each and otherwise as it sent them.
struct FetchOutcome
{
    enum class Kind {
        /// A new picture is on show.
        NewPicture,
        /// The same picture again, byte for byte.
        SamePicture,
        /// Answered 304: the server has nothing newer.
        NotModified,
        /// A part of the announced bytes is missing. What has come may be on show.
        Incomplete,
        /// The camera has moved for good, to `address`.
        Moved,
        /// The server points to `address`, which is not followed by itself.
        PointsElsewhere,
        /// Each answer pointed elsewhere, too often in a row.
        Circle,
        /// A name and a password are wanted.
        SignInWanted,
        /// Any other answer that is no picture; `text` is its status, "503 Service Unavailable".
        Refused,
        /// The body is no picture; `sent` says what it is.
        NotAPicture,
        /// The connection failed, or broke before anything came; `text` is Qt's reason.
        Failed,
        /// Connected, and nothing came.
        NoAnswer,
        /// The address cannot be fetched; `text` says why, as a sentence.
        BadAddress,
    };

    /// What came in a picture's place.
    enum class Sent { WebPage, Text, Video, Nothing, SomethingElse };

    Kind kind = Kind::NewPicture;
    /// The whole key of the camera that was asked.
    QString camera = {};
    /// Its host's name, without port.
    QString host = {};
    /// An http or https address with its scheme, where the kind has one.
    QString address = {};
    QString text = {};
    Sent sent = Sent::SomethingElse;

    /// Whether the camera's newest picture is on show, so that nothing needs to be said.
    bool isFine() const
    {
        return kind == Kind::NewPicture || kind == Kind::SamePicture || kind == Kind::NotModified;
    }
};
Q_DECLARE_METATYPE(FetchOutcome)

/// What `body`, which is no picture, is, by its bytes and by `contentType`, the header's value
/// (RFC 9110, section 8.3) or empty.
FetchOutcome::Sent whatWasSent(const QByteArray& body, const QByteArray& contentType);
