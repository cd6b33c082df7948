#include "platform/command_line_text.h"

namespace tollivar::platform {

namespace {

bool isBlank(QChar character)
{
    return character == u' ' || character == u'\t';
}

/// Reads the program's name, which knows quotes but no escapes; `position` moves behind it.
QString takeProgramName(QStringView line, qsizetype &position)
{
    QString name;
    bool isQuoted = false;
    for (; position < line.size() && (isQuoted || !isBlank(line[position])); ++position) {
        if (line[position] == u'"') {
            isQuoted = !isQuoted;
        } else {
            name += line[position];
        }
    }
    return name;
}

/// Reads one argument; `position` stands on its first character and moves behind it.
QString takeArgument(QStringView line, qsizetype &position)
{
    QString argument;
    bool isQuoted = false;
    while (position < line.size() && (isQuoted || !isBlank(line[position]))) {
        qsizetype backslashes = 0;
        while (position < line.size() && line[position] == u'\\') {
            ++backslashes;
            ++position;
        }
        const bool beforeQuote = position < line.size() && line[position] == u'"';
        argument += QString(beforeQuote ? backslashes / 2 : backslashes, u'\\');
        if (!beforeQuote) {
            if (backslashes == 0) {
                argument += line[position++];
            }
            continue;
        }
        const bool isDoubled = isQuoted && position + 1 < line.size() && line[position + 1] == u'"';
        if (backslashes % 2 == 1) {
            argument += u'"';
        } else if (isDoubled) {
            argument += u'"';
            ++position;
        } else {
            isQuoted = !isQuoted;
        }
        ++position;
    }
    return argument;
}

QString quoted(const QString &argument)
{
    QString text(u'"');
    qsizetype backslashes = 0;
    for (const QChar character : argument) {
        if (character == u'"') {
            // Doubles the run of backslashes before the quote, and escapes the quote itself.
            text += QString(backslashes + 1, u'\\');
        }
        backslashes = character == u'\\' ? backslashes + 1 : 0;
        text += character;
    }
    return text + QString(backslashes, u'\\') + QLatin1Char('"');
}

} // namespace

QStringList splitCommandLine(QStringView commandLine)
{
    QStringList arguments;
    qsizetype position = 0;
    const auto skipBlanks = [&] {
        while (position < commandLine.size() && isBlank(commandLine[position])) {
            ++position;
        }
    };
    skipBlanks();
    if (position == commandLine.size()) {
        return arguments;
    }
    arguments.append(takeProgramName(commandLine, position));
    for (skipBlanks(); position < commandLine.size(); skipBlanks()) {
        arguments.append(takeArgument(commandLine, position));
    }
    return arguments;
}

QString joinCommandLine(const QStringList &arguments)
{
    QStringList parts;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        // The program's name knows no escapes; no file system of ours allows a quote in it.
        parts.append(i == 0 ? QLatin1Char('"') + arguments[i] + QLatin1Char('"')
                            : quoted(arguments[i]));
    }
    return parts.join(QLatin1Char(' '));
}

} // namespace tollivar::platform
