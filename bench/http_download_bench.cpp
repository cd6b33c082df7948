#include "fetch/http_download.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>
#include <thread>
#include <vector>

namespace {

class OneDownload final : public tollivar::tasks::TaskWorker {
public:
    void run() override
    {
        tollivar::tasks::TaskInfo task = record();
        isDone = tollivar::fetch::downloadHttp(*this, task, tollivar::platform::systemClock()) ==
                 tollivar::fetch::StepResult::Done;
    }

    bool isDone = false;
};

} // namespace

/// Downloads an address by the real download step, into as many files as threads.
/// usage: http_download_bench ADDRESS FOLDER [THREADS]
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        return 2;
    }
    const int count = arguments.size() > 3 ? arguments[3].toInt() : 1;
    std::vector<std::unique_ptr<OneDownload>> downloads;
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        tollivar::tasks::TaskInfo task;
        task.strDownloadUrl = arguments[1];
        task.strOutputFolder = QDir(arguments[2]).absolutePath() + QLatin1Char('/');
        task.strOutputName = QStringLiteral("ours%1").arg(i);
        task.strFileType = QStringLiteral(".bin");
        downloads.push_back(std::make_unique<OneDownload>());
        downloads.back()->setRecord(task);
        threads.emplace_back([download = downloads.back().get()] { download->run(); });
    }
    bool allDone = true;
    for (std::size_t i = 0; i < threads.size(); ++i) {
        threads[i].join();
        allDone = allDone && downloads[i]->isDone;
    }
    return allDone ? 0 : 1;
}
