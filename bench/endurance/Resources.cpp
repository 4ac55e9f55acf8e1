#include "Resources.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>

#include <cstdlib>
#include <malloc.h>
#include <memory>

#include <xcb/res.h>
#include <xcb/xcb.h>

namespace {

struct Free
{
    void operator()(void* answer) const { std::free(answer); }
};
template<typename T>
using Answer = std::unique_ptr<T, Free>;

qint64 residentNow()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        qFatal("bench: no /proc");
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong();
    }
    qFatal("bench: /proc tells no VmRSS");
}

QByteArray nameOf(xcb_connection_t* x, xcb_atom_t atom)
{
    const Answer<xcb_get_atom_name_reply_t> name(
        xcb_get_atom_name_reply(x, xcb_get_atom_name(x, atom), nullptr));
    return name ? QByteArray(xcb_get_atom_name_name(name.get()),
                             xcb_get_atom_name_name_length(name.get()))
                : QByteArray::number(atom);
}

} // namespace

Resources Resources::now()
{
    const auto* native = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* x = native ? native->connection() : nullptr;
    if (!x)
        qFatal("bench: no X server");
    const quint32 self = xcb_get_setup(x)->resource_id_base;

    Resources found;
    // Answered after all that was asked for before.
    const Answer<xcb_res_query_client_resources_reply_t> kinds(
        xcb_res_query_client_resources_reply(x, xcb_res_query_client_resources(x, self), nullptr));
    const Answer<xcb_res_query_client_pixmap_bytes_reply_t> bytes(
        xcb_res_query_client_pixmap_bytes_reply(x, xcb_res_query_client_pixmap_bytes(x, self),
                                                nullptr));
    if (!kinds || !bytes)
        qFatal("bench: the X server has no X-Resource");
    for (auto kind = xcb_res_query_client_resources_types_iterator(kinds.get()); kind.rem;
         xcb_res_type_next(&kind))
        found.onServer[nameOf(x, kind.data->resource_type)] += kind.data->count;
    found.pixmapBytes = (quint64(bytes->bytes_overflow) << 32) + bytes->bytes;
    found.descriptors = int(QDir(QStringLiteral("/proc/self/fd"))
                                .entryList(QDir::System | QDir::AllEntries | QDir::NoDotAndDotDot)
                                .size());
    found.residentKilobytes = residentNow();
    const auto heap = mallinfo2();
    found.heapKilobytes = qint64((heap.uordblks + heap.hblkhd) / 1024);
    return found;
}

qint64 Resources::residentAfterTrimming()
{
    malloc_trim(0);
    return residentNow();
}
