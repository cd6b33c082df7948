#include "companions/pageprobe/answer_writer.h"

namespace tollivar::probe {

namespace {

/// A value that breaks no line and cannot pass for another key.
QByteArray oneLine(const QString &value)
{
    QString line = value;
    line.removeIf([](QChar character) {
        return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
               character == QChar::ParagraphSeparator;
    });
    return line.toUtf8();
}

void append(QByteArray &answer, const char *key, const QString &value)
{
    if (!value.isEmpty()) {
        answer += QByteArray(key) + " = " + oneLine(value) + "\r\n";
    }
}

QString typeDescription(const QString &extension)
{
    if (extension.isEmpty()) {
        return {};
    }
    return extension.mid(1).toUpper() + QStringLiteral(" Media (*%1)").arg(extension);
}

} // namespace

QByteArray writeAnswer(const std::vector<capture::MediaFound> &media)
{
    QByteArray answer;
    for (const capture::MediaFound &medium : media) {
        append(answer, "PROTOCOL", QStringLiteral("1"));
        append(answer, "URL", medium.address);
        append(answer, "TITLE", medium.title);
        append(answer, "TYPE", typeDescription(medium.extension));
        append(answer, "COOKIES", medium.cookies);
        append(answer, "AGENT", medium.agent);
        append(answer, "REFERER", medium.referer);
        append(answer, "LOCATION", medium.location);
        append(answer, "LENGTH", medium.length ? QString::number(*medium.length) : QString());
        answer += "\r\n";
    }
    return answer;
}

} // namespace tollivar::probe
