// That the header of a JPEG tells all scans that a decoder then meets, whatever the bytes are: the
// bounds go by what it tells.

#include "picture/headers/PictureHeader.h"

#include "picture/Still.h"
#include "support/OddPictures.h"
#include "support/Rows.h"

#include <QRandomGenerator>

#include <csetjmp>
#include <cstdio> // jpeglib.h needs it before itself

#include <jpeglib.h>

namespace {

constexpr QSize Small(40, 24);

struct Scans
{
    int count = 0;
    bool ended = false; ///< At the end of the image, and not by an error.
};

struct Errors : jpeg_error_mgr
{
    std::jmp_buf leave;
};

/// What the library itself meets. Nothing that needs to be destroyed lives here: it leaves by
/// longjmp.
void meetScans(QByteArrayView bytes, Scans& scans, Errors& errors, jpeg_decompress_struct& info)
{
    info.err = jpeg_std_error(&errors);
    errors.error_exit = [](j_common_ptr common) {
        std::longjmp(static_cast<Errors*>(common->err)->leave, 1);
    };
    errors.output_message = [](j_common_ptr) {};
    if (setjmp(errors.leave))
        return;
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, reinterpret_cast<const unsigned char*>(bytes.data()),
                 static_cast<unsigned long>(bytes.size()));
    if (jpeg_read_header(&info, TRUE) != JPEG_HEADER_OK)
        return;
    scans.count = 1;
    info.buffered_image = TRUE;
    jpeg_start_decompress(&info);
    while (jpeg_consume_input(&info) != JPEG_REACHED_EOI)
        scans.count = info.input_scan_number;
    scans.ended = true;
}

Scans scansOf(QByteArrayView bytes)
{
    Scans scans;
    Errors errors{};
    jpeg_decompress_struct info{};
    meetScans(bytes, scans, errors, info);
    jpeg_destroy_decompress(&info);
    return scans;
}

QByteArray withRestarts(const QByteArray& jpeg)
{
    return jpeg.first(2) + odd::jpegSegment(0xDD, QByteArray::fromHex("0001")) + jpeg.mid(2);
}

/// One or some of what hides scans from who reads markers in another way.
QByteArray mutated(QByteArray bytes, QRandomGenerator& random)
{
    const auto place = [&] { return random.bounded(int(bytes.size() - 2)) + 2; };
    const auto byte = [&] { return char(random.bounded(256)); };
    for (int left = 1 + random.bounded(4); left > 0; --left) {
        const int at = place();
        const qsizetype marker = bytes.indexOf('\xFF', at);
        switch (random.bounded(7)) {
        case 0:
            bytes[at] = byte();
            break;
        case 1: // A marker, any or a reserved one, with a length that may be anything.
            bytes.insert(at, QByteArray("\xFF") + byte() + char(random.bounded(3)) + byte());
            break;
        case 2:
            bytes.insert(at, QByteArray("\xFF") + char(1 + random.bounded(0xBF)) + byte() + byte());
            break;
        case 3:
            bytes.insert(at, QByteArray(1 + random.bounded(3), '\xFF'));
            break;
        case 4:
            if (marker >= 0 && marker + 3 < bytes.size())
                bytes[marker + 1 + random.bounded(3)] = byte();
            break;
        case 5:
            bytes.remove(at, 1 + random.bounded(20));
            break;
        default:
            bytes.insert(at, bytes.mid(place(), random.bounded(60)));
        }
        if (bytes.size() < 20)
            return bytes;
    }
    return bytes;
}

} // namespace

class JpegScansTest : public QObject
{
    Q_OBJECT
private slots:
    void ofManyOddFilesAreThoseOfTheDecoder_data()
    {
        const Rows<QByteArray> row("bytes");
        const QByteArray progressive = odd::encoded(odd::scenery(Small), "jpg", true);
        const odd::JpegFrame frame{.size = Small, .marker = 0xC2};
        row("progressive", progressive);
        row("progressive, restarting", withRestarts(odd::jpegInScans(frame, 9, "\x12")));
        row("a scan for each colour", withRestarts(odd::jpegInScans({.size = Small}, 9, "\x12")));
        QByteArray arithmetic = odd::jpegInScans(frame, 6, "\x12\x34");
        arithmetic[arithmetic.indexOf("\xFF\xC2") + 1] = '\xCA';
        row("arithmetic", withRestarts(arithmetic));
        row("grey, progressive",
            withRestarts(odd::jpegInScans({.size = Small, .marker = 0xC2, .sampling = {0x11}}, 9)));
    }

    void ofManyOddFilesAreThoseOfTheDecoder()
    {
        QFETCH(QByteArray, bytes);
        QRandomGenerator random(12);
        int met = 0;
        int ended = 0;
        for (int round = 0; round < 6'000; ++round) {
            const QByteArray one = round == 0 ? bytes : mutated(bytes, random);
            const auto header = PictureHeader::read(one);
            if (!header)
                continue;
            const Scans scans = scansOf(QByteArrayView(one).first(header->usedBytes));
            if (scans.count > header->scans || (scans.ended && scans.count < header->scans))
                QFAIL(qPrintable(QString("%1 scans and not %2 in %3")
                                     .arg(scans.count)
                                     .arg(header->scans)
                                     .arg(QString::fromLatin1(one.toHex()))));
            met += scans.count > 1;
            ended += scans.ended;
        }
        qInfo("%d with several scans, %d to their end", met, ended);
        QVERIFY(met > 1'000);
        QVERIFY(ended > 300);
    }

    /// A decoder that is looking for a restart passes over the reserved marker alone.
    void cannotHideBehindAReservedMarker_data()
    {
        const Rows<int> row("marker");
        for (const int marker : {0x01, 0x02, 0x80, 0xBF})
            row(std::to_string(marker), marker);
    }

    void cannotHideBehindAReservedMarker()
    {
        QFETCH(int, marker);
        const odd::JpegFrame frame{.size = {1'000, 1'000}, .marker = 0xC2, .sampling = {0x11}};
        const QByteArray scan = odd::jpegScan(1, 1, {}, 1, odd::WholeBlock, 0x10);
        const qsizetype scans = 0xFFFD / scan.size();
        const QByteArray bytes = withRestarts(
            odd::jpegStart() + odd::jpegTables(true) + odd::jpegFrame(frame) +
            odd::jpegScan(1, 1, {}, 0, 0, 1) + odd::jpegScan(1, 1, {}, 1, odd::WholeBlock, 1) +
            "\xFF" + char(marker) + "\xFF\xFF" + scan.repeated(scans) + odd::jpegEnd());
        const auto header = PictureHeader::read(bytes);
        QVERIFY(header);
        QCOMPARE(header->scans, int(scans) + 2);
        QVERIFY(Still::fromBytes(bytes).isNull());
    }
};

QTEST_GUILESS_MAIN(JpegScansTest)
#include "tst_JpegScans.moc"
