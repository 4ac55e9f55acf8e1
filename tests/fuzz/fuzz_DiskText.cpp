#include "fuzz/Fuzzing.h"

#include "shared/DiskText.h"

namespace {

/// Half of a surrogate pair is no character: it comes back as a question mark.
QString withoutHalves(const QString& text)
{
    QString whole;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool pair =
            text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (pair)
            whole += text.mid(i++, 2);
        else
            whole += text[i].isSurrogate() ? QChar(u'?') : text[i];
    }
    return whole;
}

} // namespace

/// Every text survives the disk, and every field the separator.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const QString text = fuzzing::brokenTextFrom(input, 200);
    const QString kept = withoutHalves(text);
    REQUIRE(fromDisk(toDisk(text)) == kept);
    const QByteArray field = toDiskField(text);
    REQUIRE(!field.contains('\xFF'));
    QString shown = kept;
    shown.replace(QChar(0xFF), QStringView(u"y\u0308").toString());
    REQUIRE(fromDisk(field) == shown);

    const QByteArray bytes = fuzzing::restOf(input);
    const QString read = fromDisk(bytes);
    REQUIRE(fromDisk(toDisk(read)) == read);
    const QByteArrayView rest = withoutByteOrderMark(bytes);
    REQUIRE(rest.size() == bytes.size() || rest.size() == bytes.size() - 3);
    return 0;
}
