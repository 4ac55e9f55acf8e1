#include "viewer/fetch/FetchOutcome.h"

#include <algorithm>

namespace {

/// So much of a body tells what it is.
constexpr qsizetype LookedAt = 512;

/// Containers of moving pictures, by the bytes at a place of their start.
bool isVideo(const QByteArray& start)
{
    return start.mid(4, 4) == "ftyp" ||                               // MP4, ISO/IEC 14496-12
           (start.startsWith("RIFF") && start.mid(8, 4) == "AVI ") || // AVI
           start.startsWith("\x1A\x45\xDF\xA3") ||                    // Matroska, WebM
           start.startsWith("FLV") || start.startsWith("#EXTM3U") ||  // Flash; HTTP Live Streaming
           start.startsWith(QByteArray("\0\0\1\xBA", 4));             // MPEG program stream
}

bool isText(const QByteArray& start)
{
    return std::none_of(start.begin(), start.end(), [](char one) {
        const auto byte = static_cast<unsigned char>(one);
        return byte < ' ' && byte != '\t' && byte != '\n' && byte != '\r' && byte != '\f';
    });
}

} // namespace

FetchOutcome::Sent whatWasSent(const QByteArray& body, const QByteArray& contentType)
{
    using Sent = FetchOutcome::Sent;
    const QByteArray start = body.left(LookedAt);
    const QByteArray lower = start.toLower();
    const QByteArray type = contentType.toLower();
    if (body.isEmpty())
        return Sent::Nothing;
    if (isVideo(start) || type.startsWith("video/") || type.startsWith("multipart/") ||
        type.contains("mpegurl"))
        return Sent::Video;
    if (!isText(start))
        return Sent::SomethingElse;
    if (lower.contains("<html") || lower.contains("<!doctype html") || type.contains("html"))
        return Sent::WebPage;
    return Sent::Text;
}
