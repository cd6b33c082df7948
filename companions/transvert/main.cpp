#include "companions/transvert/converter_run.h"
#include "platform/log.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

/// Each line at once: whoever reads them shows progress by them.
void writeLine(const QByteArray &line)
{
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    constexpr int kBadUsage = 2;
    tollivar::platform::logToFileOnly();
    const QCoreApplication application(argc, argv);
    const auto request = tollivar::transvert::readArguments(QCoreApplication::arguments().mid(1));
    if (!request) {
        writeLine(request.error().text.toUtf8());
        return kBadUsage;
    }
    return tollivar::transvert::runConverter(*request, writeLine);
}
