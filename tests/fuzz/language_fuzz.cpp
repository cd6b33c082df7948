#include "app/language/languages.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdlib>

using namespace tollivar;
using namespace Qt::StringLiterals;

namespace {

/// The rule as it is told: after each replacement the text is searched from its beginning.
QString unescapedFromTheBeginning(QString text)
{
    for (qsizetype slash = text.indexOf(u'\\'); slash >= 0; slash = text.indexOf(u'\\')) {
        const QChar next = slash + 1 < text.size() ? text[slash + 1] : QChar();
        const bool isLineEnd = next == u'n' || next == u'r';
        text.replace(slash, isLineEnd ? 2 : 1,
                     isLineEnd ? QString(QChar(next == u'n' ? u'\n' : u'\r')) : QString());
    }
    return text;
}

void require(bool holds)
{
    if (!holds) {
        std::abort();
    }
}

} // namespace

/// Any file can be a language: every text stays one, and names are short and plain.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    static const settings::SettingsStore settings(folder.filePath(u"settings.ini"_s));
    const QDir place(folder.filePath(u"Language"_s));
    require(place.mkpath(u"."_s));
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString value = QString::fromUtf8(bytes);
    require(language::unescaped(value) == unescapedFromTheBeginning(value));

    QFile file(place.filePath(u"a.ini"_s));
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    file.close();
    language::Languages languages(settings, place.path());
    languages.load();
    if (languages.names().isEmpty()) {
        return 0;
    }
    const QString name = languages.names().front();
    require(!name.isEmpty() && name.size() <= 64);
    languages.apply(name);
    for (const language::BuiltInText &text : language::builtInTexts()) {
        require(!languages.text(text.id.toString()).isEmpty());
    }
    return 0;
}
