#pragma once

#include "tasks/api/task_worker.h"

namespace tollivar::test {

/// A worker whose run does nothing: for steps that need one to report to.
class IdleWorker final : public tasks::TaskWorker {
public:
    void run() override {}
};

} // namespace tollivar::test
