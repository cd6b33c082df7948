#pragma once

#include "tasks/api/task_info.h"
#include "tasks/api/task_progress.h"
#include "tasks/api/task_state.h"
#include "tasks/api/task_worker.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace tollivar::ui {

/// The current language's text of an id.
using TextLookup = std::function<QString(const QString &id)>;

/// What the row of one task is made from.
struct RowSource {
    tasks::TaskInfo record{};
    tasks::TaskState state = tasks::TaskState::New;
    tasks::TaskState failedStage = tasks::TaskState::New;
    tasks::TaskFailure failure{};
    tasks::TaskProgress progress{};
    std::uint32_t ordinal = 0;              ///< counts from 0
    int retryCount = 0;                     ///< retries of the current start
    int retrySetting = 0;                   ///< how often a failed task may run again
    std::optional<int> convertingPercent{}; ///< while the finished file is being converted
    QString conversionFailure{};            ///< why converting it failed; else empty
};

/// The texts of one row, cell by cell.
struct RowText {
    QString path{}; ///< of the downloaded file
    QString number{};
    QString name{};
    QString size{};
    QString badge{};  ///< the type without its dots
    QString status{}; ///< in the current language
    QString detail{};
    QString speed{};
    QString timeLeft{};
    QString target{}; ///< the type with its dot
    QString mode{};
    /// How far the bar below the status reaches, 0 to 10,000; nothing where there is no bar.
    std::optional<int> bar{};
};

[[nodiscard]] RowText rowText(const RowSource &source, const TextLookup &texts);

/// Every English status word inside a text replaced by the current language's.
[[nodiscard]] QString translatedStatus(QString text, const TextLookup &texts);

} // namespace tollivar::ui
