#include "app/window/trouble_notes.h"

#include "platform/build_config.h"
#include "ui/dialog/message_box.h"

#include <QTimer>

namespace tollivar::app {

namespace {

constexpr std::chrono::minutes kUntilToldAgain{1};

} // namespace

TroubleNotes::~TroubleNotes()
{
    // It stands beside every window, so no parent takes it along.
    delete m_note.data();
}

void TroubleNotes::tell(const QString &text)
{
    const auto told = m_told.find(text);
    const bool isRecent =
        told != m_told.end() && std::chrono::steady_clock::now() - told->second < kUntilToldAgain;
    if (isRecent || m_waiting.contains(text)) {
        return;
    }
    m_waiting.append(text);
    if (m_waiting.size() == 1) {
        // Not from in here: whoever tells may be in the middle of a transaction.
        QTimer::singleShot(0, this, &TroubleNotes::showNextWhenFree);
    }
}

void TroubleNotes::showNextWhenFree()
{
    m_freeMoment.run([this] { showNext(); });
}

void TroubleNotes::showNext()
{
    auto *note = new ui::MessageBox(ui::MessageBox::Warning, QString(platform::build::kProductName),
                                    m_waiting.front(), ui::MessageBox::Ok, nullptr);
    note->setAttribute(Qt::WA_DeleteOnClose);
    connect(note, &QDialog::finished, this, &TroubleNotes::forgetFirst);
    m_note = note;
    note->open();
}

void TroubleNotes::forgetFirst()
{
    m_told[m_waiting.takeFirst()] = std::chrono::steady_clock::now();
    if (!m_waiting.isEmpty()) {
        showNextWhenFree();
    }
}

} // namespace tollivar::app
