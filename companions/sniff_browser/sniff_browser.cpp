#include "companions/sniff_browser/sniff_browser.h"

#include "companions/capture/answer_writer.h"

#include <QGuiApplication>
#include <QScreen>

namespace tollivar::sniff {

namespace {

/// Where it covers least of a page.
void placeInCorner(QWidget &panel)
{
    constexpr QPoint kFrame(24, 48);
    const QRect area = QGuiApplication::primaryScreen()->availableGeometry();
    panel.move(area.bottomRight() - QPoint(panel.width(), panel.height()) - kFrame);
}

} // namespace

SniffBrowser::SniffBrowser(const SniffArguments &arguments) : m_sender(arguments.recipient)
{
    // It stays in sight beside the browser, which is as large as the person likes.
    m_panel.setWindowFlag(Qt::WindowStaysOnTopHint);
    placeInCorner(m_panel);
    connect(&m_panel, &MediaPanel::downloadWanted, this, &SniffBrowser::download);
    connect(&m_panel, &MediaPanel::forgetWanted, this, &SniffBrowser::forget);
    connect(&m_panel, &MediaPanel::closed, this, &SniffBrowser::ended);
    connect(&m_sender, &RecordSender::sent, this, [this](bool isTaken) {
        m_panel.setStatus(isTaken
                              ? tr("Handed over.")
                              : tr("Tollivar does not run. Start it, then choose Download again."));
    });
    open(arguments.address);
}

SniffBrowser::~SniffBrowser() = default;

void SniffBrowser::open(const QString &address)
{
    m_browser = std::make_unique<BrowserThread>(address);
    connect(m_browser.get(), &BrowserThread::mediaChanged, &m_panel, &MediaPanel::setMedia);
    connect(m_browser.get(), &BrowserThread::browserEnded, this, &SniffBrowser::ended);
    connect(m_browser.get(), &BrowserThread::browserMissing, &m_panel, &MediaPanel::showProblem);
}

void SniffBrowser::download(const std::vector<capture::MediaFound> &media)
{
    for (const capture::MediaFound &medium : media) {
        m_sender.send(capture::writeAnswer({medium}));
    }
}

void SniffBrowser::forget()
{
    if (m_isForgetting) {
        return;
    }
    m_isForgetting = true;
    m_panel.setMedia({});
    m_panel.setStatus(tr("Closing the browser..."));
    // Queued, as the one that tells it is replaced.
    connect(
        m_browser.get(), &BrowserThread::gone, this,
        [this] {
            m_isForgetting = false;
            m_panel.setStatus(tr("Everything is forgotten."));
            open({});
        },
        Qt::QueuedConnection);
    // The profile goes with the browser.
    m_browser->end();
}

} // namespace tollivar::sniff
