#include "fuzz/Fuzzing.h"

#include "settings/IniFile.h"

namespace {

bool canBeASection(const QString& name)
{
    return !name.contains(u']') && !name.contains(u'\r') && !name.contains(u'\n');
}

bool canBeAKey(const QString& name)
{
    const QString key = name.trimmed();
    return !key.isEmpty() && !key.contains(u'=') && !key.contains(u'\r') && !key.contains(u'\n') &&
           !key.startsWith(u';') && !key.startsWith(u'[');
}

} // namespace

/// Any bytes are an ini file, and a value that is set reads back, at once and from the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const QString section = fuzzing::textFrom(input, 20);
    const QString key = fuzzing::textFrom(input, 20);
    QString value = fuzzing::textFrom(input, 60);
    const QByteArray bytes = fuzzing::restOf(input);

    IniFile file;
    REQUIRE(file.parse(bytes));
    REQUIRE(file.bytes() == bytes);
    const qsizetype keys = file.keys(section).size();
    file.setValue(section, key, value);
    const QString kept = file.value(section, key);
    REQUIRE(file.keys(section).size() <= keys + 1);

    IniFile again;
    REQUIRE(again.parse(file.bytes()));
    REQUIRE(again.value(section, key) == kept);
    if (canBeASection(section) && canBeAKey(key)) {
        // A line break is one blank; other blanks are kept.
        value.replace(QLatin1StringView("\r\n"), QLatin1StringView(" "));
        value.replace(u'\r', u' ').replace(u'\n', u' ');
        REQUIRE(kept == value);
        again.removeKey(section, key);
        REQUIRE(again.value(section, key).isEmpty());
    }
    return 0;
}
