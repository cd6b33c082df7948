#include "tests/tasks/store_fixture.h"

#include "tasks/db/sqlite3_db.h"
#include "tasks/db/sqlite3_exception.h"

#include <QDir>

#include <gtest/gtest.h>

namespace tollivar::test {

using namespace Qt::StringLiterals;
using tasks::StoredTask;
using tasks::TaskDatabase;
using tasks::TaskInfo;

TaskInfo fullTask()
{
    TaskInfo task;
    int number = 0;
    for (QString TaskInfo::*field :
         {&TaskInfo::strOriURL, &TaskInfo::strDownloadUrl, &TaskInfo::strOutputFolder,
          &TaskInfo::strOutputName, &TaskInfo::strFileType, &TaskInfo::strCookies,
          &TaskInfo::strAgent, &TaskInfo::strReferer, &TaskInfo::strApp, &TaskInfo::strFlashVer,
          &TaskInfo::strSwfUrl, &TaskInfo::strTcUrl, &TaskInfo::strPageUrl,
          &TaskInfo::strPlayPath}) {
        task.*field = u"text %1"_s.arg(++number);
    }
    using tasks::ConversionOptions;
    for (QString ConversionOptions::*field :
         {&ConversionOptions::m_csVideoSizeOpts, &ConversionOptions::m_csVideoBitRateOpts,
          &ConversionOptions::m_csVideoFrameRateOpts, &ConversionOptions::m_csAudioBitRateOpts,
          &ConversionOptions::m_csAudioSampleRateOpts, &ConversionOptions::m_csAudioChannelOpts,
          &ConversionOptions::m_csVideoCodecOpts, &ConversionOptions::m_csAudioCodecOpts,
          &ConversionOptions::m_csConvParam, &ConversionOptions::m_csType,
          &ConversionOptions::m_csProfileName, &ConversionOptions::m_csOutputName}) {
        task.m_ConvOpts.*field = u"option %1"_s.arg(++number);
    }
    task.m_ConvOpts.m_nTotalSeconds = 20;
    task.m_ConvOpts.m_nStartSeconds = 3;
    task.m_ConvOpts.m_nLengthSeconds = 7;
    task.dwSize = 4321;
    task.dwDownloadSize = 1234;
    task.bAutoRename = 0;
    task.bFileCreated = 1;
    task.nModeLow = 6;
    task.nModeHigh = 2;
    task.nProtocol = 3;
    task.nCompletedStatus = 1;
    return task;
}

TaskInfo asStored(TaskInfo task)
{
    task.m_ConvOpts.m_nTotalSeconds = 0;
    task.m_ConvOpts.m_nStartSeconds = 0;
    task.m_ConvOpts.m_nLengthSeconds = 0;
    return task;
}

std::unique_ptr<TaskDatabase> TaskStore::open()
{
    auto opened = TaskDatabase::open(
        path(), oldListPath(), [this](const QString &message) { m_messages.append(message); });
    if (opened) {
        return *std::move(opened);
    }
    m_openError = opened.error();
    return nullptr;
}

std::vector<StoredTask> TaskStore::load(TaskDatabase &database)
{
    std::vector<StoredTask> tasks;
    database.LoadTasks([&tasks](tasks::RowId row, TaskInfo &&task) {
        tasks.push_back({row, std::move(task)});
    });
    return tasks;
}

void TaskStore::runSql(const QString &sql) const
{
    tasks::CppSQLite3DB database;
    database.open(path());
    database.execDML(sql);
}

QString TaskStore::scalar(const QString &sql) const
{
    tasks::CppSQLite3DB database;
    database.openReadOnly(path());
    return database.execScalarText(sql);
}

QStringList TaskStore::filesSetAside() const
{
    return QDir(m_sandbox.path()).entryList({u"*damaged*.db"_s}, QDir::AllEntries, QDir::Name);
}

} // namespace tollivar::test
