#pragma once

#include "tests/support/session_bus.h"

#include <QDBusVirtualObject>

namespace tollivar::test {

/// Who shows notices on a desktop, as far as it is asked whether they are wanted. It answers while
/// the test runs its event loop.
///
/// Fails the test when the bus does not take it.
class NotificationService final : public QDBusVirtualObject {
public:
    /// To the question whether notices are switched off.
    enum class Answer { No, Yes, NoSuchProperty, Text, Silence };

    /// The bus must outlive the service.
    explicit NotificationService(const SessionBus &bus);
    ~NotificationService() override;
    NotificationService(const NotificationService &) = delete;
    NotificationService &operator=(const NotificationService &) = delete;

    /// What it answers from now on; No at first.
    void answer(Answer answer) { m_answer = answer; }
    /// How often it was asked.
    [[nodiscard]] int questions() const { return m_questions; }

    [[nodiscard]] QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    Answer m_answer = Answer::No;
    int m_questions = 0;
};

} // namespace tollivar::test
