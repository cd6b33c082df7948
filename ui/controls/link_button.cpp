#include "ui/controls/link_button.h"

#include "platform/open_external.h"

namespace tollivar::ui {

using namespace Qt::StringLiterals;

bool openLink(const QString &link, LinkTarget target)
{
    if (target == LinkTarget::Browser && platform::startCompanion(u"iexplore.exe"_s, {link})) {
        return true;
    }
    return platform::openAddress(link);
}

CLinkButton::CLinkButton(QWidget *parent, Open open) : QPushButton(parent), m_open(std::move(open))
{
    setCursor(Qt::PointingHandCursor);
    connect(this, &QPushButton::clicked, this, &CLinkButton::follow);
}

void CLinkButton::follow() const
{
    const QString link = m_link.isEmpty() ? text() : m_link;
    if (link.startsWith(u"http://"_s)) {
        m_open(link, m_target);
    }
}

} // namespace tollivar::ui
