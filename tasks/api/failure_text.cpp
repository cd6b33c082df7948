#include "tasks/api/failure_text.h"

namespace tollivar::tasks {

namespace {

QString reasonWord(std::uint32_t httpStatus)
{
    switch (httpStatus) {
    case 401:
        return QStringLiteral("Access Denied");
    case 403:
        return QStringLiteral("Request Forbidden");
    case 404:
        return QStringLiteral("File Not Found");
    default:
        return {};
    }
}

} // namespace

QString failureText(TaskState failedStage)
{
    return failedStage == TaskState::ResolvingPage ? QStringLiteral("Parsing Failed")
                                                   : QStringLiteral("Downloading Failed");
}

QString failureReason(const TaskFailure &failure)
{
    switch (failure.kind) {
    case ErrorKind::Network:
        return QStringLiteral(" - Network Error");
    case ErrorKind::HttpStatus:
        return QStringLiteral(" - %1 (HTTP %2 Error)")
            .arg(reasonWord(failure.httpStatus))
            .arg(failure.httpStatus);
    case ErrorKind::CannotCreateFile:
        // Without a blank before the dash, unlike the others: existing translations rely on it.
        return QStringLiteral("- Can Not Create File");
    case ErrorKind::None:
    case ErrorKind::NoAddress:
        return {};
    }
    return {};
}

} // namespace tollivar::tasks
