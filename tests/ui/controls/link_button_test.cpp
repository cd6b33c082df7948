#include "tests/support/window_driver.h"
#include "ui/controls/link_button.h"

namespace tollivar::ui {
namespace {

using namespace Qt::StringLiterals;

class LinkButton : public ::testing::Test {
protected:
    /// What a click opens.
    [[nodiscard]] QStringList clicked()
    {
        m_opened.clear();
        test::click(m_button);
        return m_opened;
    }

    QStringList m_opened;
    std::vector<LinkTarget> m_targets;
    CLinkButton m_button{nullptr, [this](const QString &link, LinkTarget target) {
                             m_opened.append(link);
                             m_targets.push_back(target);
                             return true;
                         }};
};

TEST_F(LinkButton, followsItsLink)
{
    m_button.setText(u"Home page"_s);
    m_button.setLink(u"http://site.example/"_s);
    EXPECT_EQ(clicked(), QStringList{u"http://site.example/"_s});
}

TEST_F(LinkButton, withoutALinkFollowsItsText)
{
    m_button.setText(u"http://site.example/page"_s);
    EXPECT_EQ(clicked(), QStringList{u"http://site.example/page"_s});
}

TEST_F(LinkButton, itsLinkGoesBeforeItsText)
{
    m_button.setText(u"http://text.example/"_s);
    m_button.setLink(u"not a link"_s);
    EXPECT_EQ(clicked(), QStringList{});
}

TEST_F(LinkButton, followsNothingElseThanHttp)
{
    for (const QString &link :
         {u"https://site.example/"_s, u"HTTP://site.example/"_s, u"site.example"_s,
          u" http://site.example/"_s, u"file:///etc/passwd"_s, u"javascript:alert(1)"_s,
          u"--help"_s, u"http:/site.example"_s, QString()}) {
        m_button.setText(link);
        m_button.setLink(link);
        EXPECT_EQ(clicked(), QStringList{}) << link.toStdString();
    }
}

TEST_F(LinkButton, saysWhatToOpenItWith)
{
    m_button.setLink(u"http://site.example/"_s);
    static_cast<void>(clicked());
    m_button.setTarget(LinkTarget::Browser);
    static_cast<void>(clicked());
    EXPECT_EQ(m_targets, (std::vector{LinkTarget::DefaultHandler, LinkTarget::Browser}));
}

} // namespace
} // namespace tollivar::ui
