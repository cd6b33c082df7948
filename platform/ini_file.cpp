#include "platform/ini_file.h"

#include "platform/file_ops.h"
#include "platform/text_encoding.h"

#include <QFile>
#include <QStringList>
#include <QtEndian>

#include <limits>
#include <optional>

namespace tollivar::platform {

namespace {

/// Larger files are no settings; reading them would only cost memory.
constexpr qint64 kMaximumFileSize = 64LL * 1024 * 1024;
constexpr qsizetype kMaximumValueLength = 32'767;

enum class Encoding { Utf16, Utf8WithMark, Utf8, Ansi };

constexpr QByteArrayView kUtf16Mark("\xFF\xFE", 2);
constexpr QByteArrayView kUtf8Mark("\xEF\xBB\xBF", 3);

struct Content {
    Encoding encoding = Encoding::Utf16;
    QString text;
};

QString decodeUtf16(QByteArrayView bytes)
{
    QString text(bytes.size() / 2, Qt::Uninitialized);
    qFromLittleEndian<char16_t>(bytes.data(), text.size(), text.data());
    return text;
}

Content decode(const QByteArray &bytes)
{
    if (bytes.startsWith(kUtf16Mark)) {
        return {Encoding::Utf16, decodeUtf16(QByteArrayView(bytes).sliced(2))};
    }
    if (bytes.startsWith(kUtf8Mark)) {
        return {Encoding::Utf8WithMark, QString::fromUtf8(QByteArrayView(bytes).sliced(3))};
    }
    const QString text = decodeUtf8OrLatin1(bytes);
    return {text.toUtf8() == bytes ? Encoding::Utf8 : Encoding::Ansi, text};
}

QByteArray encode(const Content &content)
{
    switch (content.encoding) {
    case Encoding::Utf8WithMark:
        return kUtf8Mark.toByteArray() + content.text.toUtf8();
    case Encoding::Utf8:
        return content.text.toUtf8();
    case Encoding::Ansi:
        // A value outside Latin-1 would be lost; the file then moves to UTF-8 with its mark.
        if (QString::fromLatin1(content.text.toLatin1()) == content.text) {
            return content.text.toLatin1();
        }
        return kUtf8Mark.toByteArray() + content.text.toUtf8();
    case Encoding::Utf16:
        break;
    }
    QByteArray bytes(content.text.size() * 2, Qt::Uninitialized);
    qToLittleEndian<char16_t>(content.text.utf16(), content.text.size(), bytes.data());
    return kUtf16Mark.toByteArray() + bytes;
}

std::optional<Content> load(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kMaximumFileSize) {
        return std::nullopt;
    }
    return decode(file.read(kMaximumFileSize));
}

/// Where one key's line stands in the text, or where it would have to be inserted.
struct Place {
    qsizetype begin = 0;
    qsizetype end = 0; ///< without the line's end; equal to `begin` when the key is missing
    QStringView value;
    bool hasSection = false;
    bool hasKey = false;
};

bool isNamed(QStringView text, QStringView name)
{
    return text.trimmed().compare(name.trimmed(), Qt::CaseInsensitive) == 0;
}

qsizetype endOfLine(QStringView text, qsizetype begin)
{
    while (begin < text.size() && text[begin] != u'\n' && text[begin] != u'\r') {
        ++begin;
    }
    return begin;
}

/// Where the line behind the one that ends at `end` begins.
qsizetype nextLine(QStringView text, qsizetype end)
{
    const bool isPair = end + 1 < text.size() && text[end] == u'\r' && text[end + 1] == u'\n';
    return end + (isPair ? 2 : 1);
}

/// True for the heading of the section; `trimmed` begins with its bracket.
bool isHeadingOf(QStringView trimmed, QStringView section)
{
    const qsizetype close = trimmed.indexOf(u']');
    return close > 0 && isNamed(trimmed.sliced(1, close - 1), section);
}

/// One walk over the lines; the first section and the first key of that name count.
Place find(QStringView text, QStringView section, QStringView key)
{
    Place place;
    bool isInside = false;
    for (qsizetype begin = 0; begin < text.size();) {
        const qsizetype end = endOfLine(text, begin);
        const QStringView line = text.sliced(begin, end - begin);
        const QStringView trimmed = line.trimmed();
        if (trimmed.startsWith(u'[')) {
            if (isInside) {
                return place;
            }
            isInside = isHeadingOf(trimmed, section);
            place.hasSection = isInside;
        } else if (const qsizetype equals = line.indexOf(u'='); isInside && equals >= 0 &&
                                                                !trimmed.startsWith(u';') &&
                                                                isNamed(line.first(equals), key)) {
            place.begin = begin;
            place.end = end;
            place.value = line.sliced(equals + 1);
            place.hasKey = true;
            return place;
        }
        begin = nextLine(text, end);
        if (isInside && !trimmed.isEmpty()) {
            place.begin = place.end = std::min(begin, text.size());
        }
    }
    return place;
}

QString unquoted(QStringView value)
{
    QStringView text = value.trimmed();
    const bool isQuoted = text.size() >= 2 && (text.front() == u'"' || text.front() == u'\'') &&
                          text.back() == text.front();
    if (isQuoted) {
        text = text.sliced(1, text.size() - 2);
    }
    return text.trimmed().first(std::min(text.trimmed().size(), kMaximumValueLength)).toString();
}

QString onOneLine(QStringView value)
{
    QString line = value.toString();
    for (QChar &character : line) {
        if (character == u'\r' || character == u'\n' || character.isNull()) {
            character = u' ';
        }
    }
    return line;
}

/// Replaces the key's line, or inserts one behind the section's last.
void set(QString &text, const IniFile::Value &value)
{
    const QString line = onOneLine(value.key) + QLatin1Char('=') + onOneLine(value.value);
    const QString lineEnd = QStringLiteral("\r\n");
    const Place place = find(text, value.section, value.key);
    const auto endLine = [&](qsizetype position) {
        const bool isOpen =
            position > 0 && text[position - 1] != u'\n' && text[position - 1] != u'\r';
        return isOpen ? lineEnd : QString();
    };
    if (place.hasKey) {
        text.replace(place.begin, place.end - place.begin, line);
    } else if (place.hasSection) {
        text.insert(place.begin, endLine(place.begin) + line + lineEnd);
    } else {
        text += endLine(text.size()) + QLatin1Char('[') + onOneLine(value.section) +
                QStringLiteral("]\r\n") + line + lineEnd;
    }
}

} // namespace

IniFile::IniFile(QString path) : m_path(std::move(path)) {}

QString IniFile::read(QStringView section, QStringView key, const QString &fallback) const
{
    const auto content = load(m_path);
    if (!content) {
        return fallback;
    }
    const Place place = find(content->text, section, key);
    return place.hasKey ? unquoted(place.value) : fallback;
}

QHash<QString, QString> IniFile::readSection(QStringView section) const
{
    const auto content = load(m_path);
    return content ? iniSection(content->text, section) : QHash<QString, QString>();
}

Result<void> IniFile::write(QStringView section, QStringView key, QStringView value) const
{
    return write({{section.toString(), key.toString(), value.toString()}});
}

Result<void> IniFile::write(const std::vector<Value> &values) const
{
    Content content;
    if (exists(m_path)) {
        auto loaded = load(m_path);
        if (!loaded) {
            return failure(ErrorKind::AskUser, QStringLiteral("\"%1\" cannot be read").arg(m_path));
        }
        content = std::move(*loaded);
    }
    for (const Value &value : values) {
        set(content.text, value);
    }
    return replaceFile(m_path, encode(content));
}

QHash<QString, QString> iniSection(QStringView text, QStringView section)
{
    QHash<QString, QString> values;
    bool isInside = false;
    for (qsizetype begin = 0, end = 0; begin < text.size(); begin = nextLine(text, end)) {
        end = endOfLine(text, begin);
        const QStringView line = text.sliced(begin, end - begin).trimmed();
        if (line.startsWith(u'[')) {
            if (isInside) {
                break;
            }
            isInside = isHeadingOf(line, section);
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (!isInside || equals < 0 || line.startsWith(u';')) {
            continue;
        }
        const QString key = line.first(equals).trimmed().toString().toLower();
        if (!values.contains(key)) {
            values.insert(key, unquoted(line.sliced(equals + 1)));
        }
    }
    return values;
}

int iniNumber(QStringView text)
{
    const QStringView trimmed = text.trimmed();
    const bool isNegative = trimmed.startsWith(u'-');
    qint64 number = 0;
    for (qsizetype i = isNegative || trimmed.startsWith(u'+') ? 1 : 0; i < trimmed.size(); ++i) {
        const char16_t digit = trimmed[i].unicode();
        if (digit < u'0' || digit > u'9') {
            break;
        }
        number = std::min<qint64>(number * 10 + (digit - u'0'),
                                  qint64{std::numeric_limits<int>::max()} + 1);
    }
    return static_cast<int>(isNegative ? -number
                                       : std::min<qint64>(number, std::numeric_limits<int>::max()));
}

} // namespace tollivar::platform
