#pragma once

#include <QPushButton>

#include <functional>

namespace tollivar::ui {

/// What a link is opened with.
enum class LinkTarget {
    DefaultHandler,
    Browser, ///< the system's own browser, else the default handler
};

/// Opens it; false when there is nothing to open it with.
bool openLink(const QString &link, LinkTarget target);

/// A button that opens a web page when clicked. It follows only a link that begins with "http://":
/// any other text, "https://" included, does nothing.
///
/// Threads: the main thread.
class CLinkButton final : public QPushButton {
    Q_OBJECT

public:
    using Open = std::function<bool(const QString &link, LinkTarget target)>;

    explicit CLinkButton(QWidget *parent = nullptr, Open open = openLink);

    /// An empty link gives way to the button's text.
    void setLink(const QString &link) { m_link = link; }
    void setTarget(LinkTarget target) { m_target = target; }

private:
    void follow() const;

    Open m_open;
    QString m_link;
    LinkTarget m_target = LinkTarget::DefaultHandler;
};

} // namespace tollivar::ui
