#include "ui/main_window/totals_line.h"

#include "ui/main_window/caption_texts.h"

#include <QLabel>
#include <QTimer>

#include <chrono>
#include <utility>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

TotalsLine::TotalsLine(QLabel &label, const tasks::TaskManager &manager, TextLookup text)
    : m_label(label)
    , m_manager(manager)
    , m_text(std::move(text))
    , m_timer(new QTimer(this))
{
    constexpr std::chrono::milliseconds kInterval{500};
    connect(m_timer, &QTimer::timeout, this, &TotalsLine::refresh);
    m_timer->start(kInterval);
}

void TotalsLine::refresh()
{
    const int running = m_manager.runningCount();
    const int waiting = m_manager.waitingCount();
    const QString totals =
        totalsText(m_text(u"strTotals"_s), running, waiting, m_manager.totalSpeed());
    if (m_label.text() != totals) {
        m_label.setText(totals);
    }
    const auto share = m_total.update(running, waiting, m_manager.totalReached());
    if (m_share != share) {
        m_share = share;
        Q_EMIT shareChanged(share);
    }
}

void TotalsLine::stop()
{
    m_timer->stop();
}

} // namespace tollivar::ui
