#include "tests/support/event_recorder.h"

#include "tests/support/wait_until.h"

#include <QStringList>

#include <algorithm>

namespace tollivar::test {

using tasks::TaskEventCode;

EventRecorder::EventRecorder()
    : m_inbox([this](const platform::AppMessage &message) {
        m_events.push_back(
            {tasks::taskIdOf(message.first), tasks::eventCodeOf(message.first), message.second});
    })
{
}

QString EventRecorder::codes() const
{
    QStringList texts;
    for (const Event &event : m_events) {
        const bool isProgress = event.code == TaskEventCode::Progress ||
                                event.code == TaskEventCode::ProgressUnknownSize;
        if (!isProgress) {
            texts.append(QString::number(static_cast<int>(event.code)));
        }
    }
    return texts.join(QLatin1Char(' '));
}

bool EventRecorder::has(TaskEventCode code) const
{
    return std::any_of(m_events.begin(), m_events.end(),
                       [code](const Event &event) { return event.code == code; });
}

void EventRecorder::waitForEnd()
{
    waitUntil("the end of the run",
              [this] { return !m_events.empty() && tasks::endsRun(m_events.back().code); });
}

} // namespace tollivar::test
