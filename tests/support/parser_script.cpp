#include "tests/support/parser_script.h"

#include <QFile>

namespace tollivar::test {

namespace {

const QString kCallsFile = QStringLiteral("calls");

} // namespace

ParserScript::ParserScript()
{
    clear();
    qputenv("FAKE_PARSER_LOG", m_sandbox.file(kCallsFile).toUtf8());
}

ParserScript::~ParserScript()
{
    clear();
}

void ParserScript::clear()
{
    for (const char *const name : {"FAKE_PARSER_LOG", "FAKE_PARSER_ANSWER",
                                   "FAKE_PARSER_SECOND_ANSWER", "FAKE_PARSER_HANGS"}) {
        qunsetenv(name);
    }
}

void ParserScript::answer(const QByteArray &text) const
{
    qputenv("FAKE_PARSER_ANSWER", text);
}

void ParserScript::answerSecondTry(const QByteArray &text) const
{
    qputenv("FAKE_PARSER_SECOND_ANSWER", text);
}

void ParserScript::hang() const
{
    qputenv("FAKE_PARSER_HANGS", "1");
}

QList<QByteArrayList> ParserScript::calls() const
{
    QList<QByteArrayList> calls;
    for (const QByteArray &line : m_sandbox.read(kCallsFile).split('\n')) {
        if (!line.isEmpty()) {
            calls.append(line.split('\x1f'));
        }
    }
    return calls;
}

void ParserScript::forgetCalls() const
{
    QFile::remove(m_sandbox.file(kCallsFile));
}

QByteArray parserAnswer(const QString &address, const QByteArray &type)
{
    return "PROTOCOL = 1\r\nURL = " + address.toUtf8() + "\r\nTYPE = " + type + "\r\n\r\n";
}

} // namespace tollivar::test
