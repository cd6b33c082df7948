#include "app/cli/standard_streams.h"

#include <cstdio>

namespace tollivar::app {

namespace {

void write(std::FILE *stream, const QByteArray &text)
{
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stream);
    std::fflush(stream);
}

} // namespace

void writeOutput(const QByteArray &text)
{
    write(stdout, text);
}

void writeError(const QString &text)
{
    write(stderr, text.toUtf8());
}

void complain(const QString &sentence)
{
    writeError(QStringLiteral("tollivar-cli: ") + printable(sentence) + QLatin1Char('\n'));
}

QString printable(const QString &text)
{
    QString clean = text;
    for (QChar &character : clean) {
        if (character.category() == QChar::Other_Control) {
            character = QChar::ReplacementCharacter;
        }
    }
    return clean;
}

} // namespace tollivar::app
