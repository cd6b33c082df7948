#include "platform/flash_version.h"

#include <QFile>
#include <QRegularExpression>

namespace tollivar::platform {

using namespace Qt::StringLiterals;

namespace {

/// No player comes near it.
constexpr qint64 kMaximumModule = 64LL * 1024 * 1024;

QStringList plugInFolders()
{
    return {u"/usr/lib/mozilla/plugins"_s, u"/usr/lib/flashplugin-nonfree"_s,
            u"/usr/lib/browser-plugin-freshplayer-pepperflash"_s, u"/usr/lib/adobe-flashplugin"_s};
}

/// The module carries its version as "LNX 32,0,0,465".
FlashVersion versionInside(const QString &module)
{
    QFile file(module);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray content = file.read(kMaximumModule);
    const qsizetype mark = content.indexOf("LNX ");
    constexpr qsizetype kMarkLength = 4;
    constexpr qsizetype kLongestVersion = 40;
    return mark < 0 ? FlashVersion{}
                    : readFlashVersion(
                          QString::fromLatin1(content.mid(mark + kMarkLength, kLongestVersion)));
}

} // namespace

FlashVersion readFlashVersion(QStringView text)
{
    static const QRegularExpression form(
        u"^\\s*(\\d{1,9})\\s*[.,]\\s*(\\d{1,9})\\s*[.,]\\s*(\\d{1,9})\\s*[.,]\\s*(\\d{1,9})"_s);
    const auto match = form.match(text.toString());
    FlashVersion version{};
    if (match.hasMatch()) {
        for (std::size_t i = 0; i < version.size(); ++i) {
            version[i] = match.capturedView(static_cast<int>(i) + 1).toUInt();
        }
    }
    return version;
}

FlashVersion flashPlayerVersion(const QStringList &folders)
{
    for (const QString &folder : folders) {
        const FlashVersion version = versionInside(folder + u"/libflashplayer.so"_s);
        if (version != FlashVersion{}) {
            return version;
        }
    }
    return {};
}

FlashVersion flashPlayerVersion()
{
    return flashPlayerVersion(plugInFolders());
}

} // namespace tollivar::platform
