#include "fetch/rtmp_download.h"

#include <QCoreApplication>
#include <QDir>

namespace {

class OneDownload final : public tollivar::tasks::TaskWorker {
public:
    void run() override {}
};

} // namespace

/// Downloads a stream by the real download step. usage: rtmp_download_bench ADDRESS FOLDER
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3) {
        return 2;
    }
    tollivar::tasks::TaskInfo task;
    task.strDownloadUrl = arguments[1];
    task.strOutputFolder = QDir(arguments[2]).absolutePath() + QLatin1Char('/');
    task.strOutputName = QStringLiteral("ours");
    task.nProtocol = 0;
    OneDownload worker;
    const auto result =
        tollivar::fetch::downloadRtmp(worker, task, tollivar::platform::systemClock());
    return result == tollivar::fetch::StepResult::Done && task.dwDownloadSize > 0 ? 0 : 1;
}
