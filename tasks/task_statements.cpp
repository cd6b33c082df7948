#include "tasks/internal/task_statements.h"

#include "tasks/task_columns.h"

namespace tollivar::tasks {

using namespace Qt::StringLiterals;

namespace {

/// What stands between a column's value and the one before it.
QStringView separatorBefore(std::size_t column)
{
    constexpr std::size_t firstConversionColumn = 13;
    switch (column) {
    case 0:
        return {};
    case firstConversionColumn:
        return u"\t\t\t\t\t\t ,";
    case kOlderColumnCount:
        return u" ,";
    default:
        return u",";
    }
}

bool isLoneSurrogate(QStringView text, qsizetype at)
{
    const QChar character = text[at];
    if (character.isHighSurrogate()) {
        return at + 1 == text.size() || !text[at + 1].isLowSurrogate();
    }
    if (character.isLowSurrogate()) {
        return at == 0 || !text[at - 1].isHighSurrogate();
    }
    return false;
}

} // namespace

QString createStatement()
{
    return u"CREATE TABLE tasks2(strOriURL NTEXT , strDownloadUrl NTEXT , "
           "strOutputFolder NVARCHAR(32767) ,strOutputName NVARCHAR(32767) ,\t\t\t\t\t\t   "
           "strFileType NVARCHAR(256) ,strCookies NTEXT ,strAgent NTEXT ,strReferer NTEXT ,"
           "dwSize INTEGER, dwDownloadSize INTEGER,\t\t\t\t\t\t   "
           "bAutoRename BOOL, bFileCreated BOOL,\t nDownloadMode INTEGER,\t\t\t\t\t\t   "
           "csAudioBitRateOpts NVARCHAR(50),m_csAudioChannelOpts NVARCHAR(10),"
           "m_csAudioCodecOpts NVARCHAR(100),m_csAudioSampleRateOpts NVARCHAR(50),"
           "m_csConvParam NVARCHAR(100),\t\t\t\t\t\t   "
           "m_csOutputName NVARCHAR(32767),m_csProfileName NVARCHAR(100),m_csType NVARCHAR(100),"
           "m_csVideoBitRateOpts NVARCHAR(50),m_csVideoCodecOpts NVARCHAR(100),\t\t\t\t\t\t   "
           "m_csVideoFrameRateOpts NVARCHAR(100),m_csVideoSizeOpts NVARCHAR(100),\t\t\t\t\t\t   "
           "nProtocol INTEGER,strApp NTEXT, strFlashVer NTEXT, strSwfUrl NTEXT, strTcUrl NTEXT, "
           "strPageUrl NTEXT, strPlayPath NTEXT,nCompletedStatus INTEGER)"_s;
}

QString insertStatement(const TaskInfo &task)
{
    QString sql = u"INSERT INTO tasks2 VALUES("_s;
    for (std::size_t column = 0; column < kTaskColumns.size(); ++column) {
        sql += separatorBefore(column);
        sql += quoted(columnText(task, kTaskColumns.at(column)));
    }
    return sql + u')';
}

QString updateStatement(std::int64_t row, QStringView column, QStringView value)
{
    return u"UPDATE tasks2 SET "_s + column.toString() + u" = "_s + quoted(value) +
           u" WHERE ROWID = "_s + quoted(QString::number(row));
}

QString deleteStatement(std::int64_t row)
{
    return u"DELETE FROM tasks2 WHERE ROWID = "_s + quoted(QString::number(row));
}

QString quoted(QStringView value)
{
    QString result;
    result.reserve(value.size() + 2);
    result += u'\'';
    for (qsizetype at = 0; at < value.size(); ++at) {
        const QChar character = value[at];
        if (character.isNull()) {
            continue;
        }
        if (character == u'\'') {
            result += u'\'';
        }
        result += isLoneSurrogate(value, at) ? QChar(QChar::ReplacementCharacter) : character;
    }
    return result + u'\'';
}

} // namespace tollivar::tasks
