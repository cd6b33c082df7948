#pragma once

#include "companions/sniff_browser/browser_thread.h"
#include "companions/sniff_browser/media_panel.h"
#include "companions/sniff_browser/record_sender.h"
#include "companions/sniff_browser/sniff_arguments.h"

#include <memory>

namespace tollivar::sniff {

/// The capture browser: browser and panel, joined. Either one's end is the other's.
///
/// Threads: the main thread, which waits for the browser at its own end only.
/// Owns:    panel, browser and the sender of what is chosen.
/// States:  ended() once the panel is closed or the browser has ended by itself.
class SniffBrowser : public QObject {
    Q_OBJECT

public:
    explicit SniffBrowser(const SniffArguments &arguments);
    ~SniffBrowser() override;
    SniffBrowser(const SniffBrowser &) = delete;
    SniffBrowser &operator=(const SniffBrowser &) = delete;

    [[nodiscard]] MediaPanel &panel() { return m_panel; }

Q_SIGNALS:
    void ended();

private:
    void open(const QString &address);
    void download(const std::vector<capture::MediaFound> &media);
    /// Ends the browser; a new one follows when nothing of it is left.
    void forget();

    MediaPanel m_panel;
    RecordSender m_sender;
    std::unique_ptr<BrowserThread> m_browser;
    bool m_isForgetting = false;
};

} // namespace tollivar::sniff
