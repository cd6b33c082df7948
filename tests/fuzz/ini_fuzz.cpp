#include "platform/ini_file.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

using tollivar::platform::IniFile;

/// Any file can be read; what is written to it is read back, and other values stay as they were.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("settings.ini"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        std::abort();
    }
    file.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size));
    file.close();

    const IniFile ini(path);
    const QString other = ini.read(u"OPTIONS", u"OTHER");
    if (!ini.write(u"SETTING_INFO", u"FUZZED", u"value") ||
        ini.read(u"SETTING_INFO", u"FUZZED") != u"value" ||
        ini.read(u"OPTIONS", u"OTHER") != other) {
        std::abort();
    }
    return 0;
}
