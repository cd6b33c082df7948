#pragma once

#include "fetch/parser_answer.h"
#include "fetch/step_result.h"
#include "tasks/api/task_worker.h"

#include <QString>

#include <vector>

namespace tollivar::fetch {

/// The command line that has a companion find the media of a page. The address becomes exactly one
/// argument, whatever it holds.
///
/// `modeSeparator` stands between "-parsemode" and the mode.
[[nodiscard]] QString parserCommandLine(const QString &address, QStringView modeSeparator,
                                        QStringView mode, QStringView type);

/// What a page parser answered; nothing when it could not be started.
struct ParserRun {
    StepResult result = StepResult::ParseFailed;
    std::vector<AnswerRecord> records{};
};

/// Runs a page parser to its end and reads its answer.
///
/// Threads: any; a stop kills the parser at once.
[[nodiscard]] ParserRun runParser(platform::AutoResetEvent &stop, const QString &commandLine);

/// Copies what a record says of a medium; what would be dangerous in a file's ending is made
/// harmless, and an address of a kind that is not fetched is left out.
void applyAnswer(const AnswerRecord &record, tasks::TaskInfo &task);

/// Runs the page parser and copies the first record of its answer into `task`.
///
/// Threads: the worker's; a stop kills the parser at once.
/// Errors:  ParseFailed when the parser cannot be started; Stopped. An answer without a record
///          leaves the task as it is and is Done: the caller looks at the address.
[[nodiscard]] StepResult resolvePage(platform::AutoResetEvent &stop, const QString &commandLine,
                                     tasks::TaskInfo &task);

} // namespace tollivar::fetch
