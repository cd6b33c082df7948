#pragma once

#include <cstdint>

namespace tollivar::tasks {

/// What a worker reports, with the meaning of the event's value. Never renumber.
enum class TaskEventCode : std::uint16_t {
    ParsingAddress = 1,       ///< 0
    DownloadStarted = 3,      ///< 0
    TakingTitle = 4,          ///< 0
    ParseFailed = 5,          ///< 0; ends the run
    DownloadFailed = 6,       ///< 0; ends the run
    Completed = 8,            ///< 0; ends the run
    Stopped = 9,              ///< 0; ends the run
    SizeKnown = 11,           ///< bytes, or kUnknownSize
    RecordChanged = 13,       ///< 0; the output name
    ProgressUnknownSize = 14, ///< bytes downloaded
    AnswerStored = 15,        ///< 0; address, type, cookies, agent, referer
    FileCreated = 18,         ///< 0
    Progress = 21,            ///< bytes downloaded
};

/// True for the events that end a run and free its slot.
[[nodiscard]] constexpr bool endsRun(TaskEventCode code)
{
    return code == TaskEventCode::ParseFailed || code == TaskEventCode::DownloadFailed ||
           code == TaskEventCode::Completed || code == TaskEventCode::Stopped;
}

/// The first value of a task event message: the id's low half in bits 0 to 15, the code in bits
/// 16 to 31, the id's high half in bits 32 to 47, so that ids above 65,535 stay apart.
[[nodiscard]] constexpr std::uint64_t packTaskEvent(std::uint32_t id, TaskEventCode code)
{
    return (id & 0xFFFFU) | (std::uint64_t{static_cast<std::uint16_t>(code)} << 16U) |
           (std::uint64_t{id >> 16U} << 32U);
}

[[nodiscard]] constexpr std::uint32_t taskIdOf(std::uint64_t packed)
{
    return static_cast<std::uint32_t>((packed & 0xFFFFU) | ((packed >> 16U) & 0xFFFF0000U));
}

[[nodiscard]] constexpr TaskEventCode eventCodeOf(std::uint64_t packed)
{
    return static_cast<TaskEventCode>((packed >> 16U) & 0xFFFFU);
}

} // namespace tollivar::tasks
