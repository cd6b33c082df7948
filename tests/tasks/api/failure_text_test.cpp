#include "tasks/api/failure_text.h"

#include <gtest/gtest.h>

namespace tollivar::tasks {
namespace {

TEST(FailureText, namesTheStageAtWhichTheRunFailed)
{
    EXPECT_EQ(failureText(TaskState::ResolvingPage), QStringLiteral("Parsing Failed"));
    EXPECT_EQ(failureText(TaskState::TakingTitle), QStringLiteral("Downloading Failed"));
    EXPECT_EQ(failureText(TaskState::Downloading), QStringLiteral("Downloading Failed"));
}

TEST(FailureText, namesTheReasonOfKnownStatuses)
{
    const auto reason = [](std::uint32_t status) {
        return failureReason({.kind = ErrorKind::HttpStatus, .httpStatus = status});
    };
    EXPECT_EQ(reason(404), QStringLiteral(" - File Not Found (HTTP 404 Error)"));
    EXPECT_EQ(reason(401), QStringLiteral(" - Access Denied (HTTP 401 Error)"));
    EXPECT_EQ(reason(403), QStringLiteral(" - Request Forbidden (HTTP 403 Error)"));
}

TEST(FailureText, anUnnamedStatusLeavesTwoBlanksAfterTheDash)
{
    EXPECT_EQ(failureReason({.kind = ErrorKind::HttpStatus, .httpStatus = 500}),
              QStringLiteral(" -  (HTTP 500 Error)"));
}

TEST(FailureText, aFileThatCannotBeCreatedHasNoBlankBeforeTheDash)
{
    EXPECT_EQ(failureReason({.kind = ErrorKind::CannotCreateFile}),
              QStringLiteral("- Can Not Create File"));
    EXPECT_EQ(failureReason({.kind = ErrorKind::Network}), QStringLiteral(" - Network Error"));
}

TEST(FailureText, otherFailuresHaveNoReason)
{
    EXPECT_EQ(failureReason({}), QString());
    EXPECT_EQ(failureReason({.kind = ErrorKind::NoAddress}), QString());
}

} // namespace
} // namespace tollivar::tasks
