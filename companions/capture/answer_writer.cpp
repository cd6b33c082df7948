#include "companions/capture/answer_writer.h"

#include "companions/capture/media_rank.h"

#include <algorithm>

namespace tollivar::capture {

namespace {

constexpr qsizetype kLongestExtension = 10;

/// A value that breaks no line, so that it cannot begin another key.
QString oneLine(QString value)
{
    for (QChar &character : value) {
        const bool breaks = character.category() == QChar::Other_Control ||
                            character == QChar::LineSeparator ||
                            character == QChar::ParagraphSeparator;
        if (breaks) {
            character = u' ';
        }
    }
    return value;
}

void append(QByteArray &answer, const char *key, const QString &value)
{
    if (!value.isEmpty()) {
        answer += QByteArray(key) + " = " + oneLine(value).toUtf8() + "\r\n";
    }
}

bool isPlainExtension(const QString &extension)
{
    return extension.size() > 1 && extension.size() <= kLongestExtension + 1 &&
           extension.front() == u'.' &&
           std::all_of(extension.begin() + 1, extension.end(), [](QChar character) {
               return character.unicode() < 0x80 && character.isLetterOrNumber();
           });
}

/// "MP4 Video (*.mp4)"; empty when there is no extension that a file may carry.
QString typeDescription(const MediaFound &medium)
{
    if (!isPlainExtension(medium.extension)) {
        return {};
    }
    const MediaKind kind = kindOf(medium.mediaType, medium.extension);
    const QString word = kind == MediaKind::Audio   ? QStringLiteral("Audio")
                         : kind == MediaKind::Flash ? QStringLiteral("Animation")
                                                    : QStringLiteral("Video");
    const QString ending = medium.extension.mid(1);
    return QStringLiteral("%1 %2 (*.%3)").arg(ending.toUpper(), word, ending.toLower());
}

} // namespace

QByteArray writeAnswer(const std::vector<MediaFound> &media)
{
    QByteArray answer;
    for (const MediaFound &medium : media) {
        append(answer, "PROTOCOL", QStringLiteral("1"));
        append(answer, "URL", medium.address);
        append(answer, "PAGEURL", medium.page);
        append(answer, "TITLE", medium.title.simplified());
        append(answer, "TYPE", typeDescription(medium));
        append(answer, "COOKIES", medium.cookies);
        append(answer, "AGENT", medium.agent);
        append(answer, "REFERER", medium.referer);
        append(answer, "LOCATION", medium.location);
        append(answer, "LENGTH", medium.length ? QString::number(*medium.length) : QString());
        answer += "\r\n";
    }
    return answer;
}

} // namespace tollivar::capture
