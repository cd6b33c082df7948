#include "platform/local_messages.h"
#include "platform/single_instance.h"
#include "tests/app/window/program_on_desktop.h"

#include <gtest/gtest.h>

namespace tollivar::app {
namespace {

using namespace Qt::StringLiterals;

/// The program that makes room once an address or a medium was taken, on a real desktop.
class DroppedAddressProgram : public ProgramOnDesktop {
protected:
    void SetUp() override
    {
        ProgramOnDesktop::SetUp();
        m_settings->setFlag(settings::keys::kMinimizeDragTask, true);
        m_window = start();
        waitUntilActive(m_window);
    }

    bool isIcon() const { return m_desktop.property(m_window, u"WM_STATE"_s).contains("Iconic"); }
    /// Presses the add-task dialog's button that far from its lower right corner.
    void press(QPoint fromCorner) const
    {
        const QString dialog = m_desktop.waitForWindow(kAddTask);
        test::waitUntil("the dialog's keyboard", [&] { return m_desktop.active() == dialog; });
        m_desktop.click(m_desktop.place(dialog).bottomRight() - fromCorner);
        test::waitUntil("the dialog to go", [&] { return m_desktop.window(kAddTask) != dialog; });
    }
    void accept() const { press({83, 33}); }
    void cancel() const { press({190, 33}); }
    void drop()
    {
        m_desktop.dropText(u"http://127.0.0.1:9/clip"_s, m_desktop.place(m_window).center());
    }
    /// What the capture browser sends.
    void capture(const QByteArray &text) const
    {
        // In the log-in's folder, or in the data directory when that is not private.
        const QString place = platform::instancePlace({}).socket.section(u'/', -2);
        const bool isTaken = [&] {
            for (const QString &folder : {u"run/"_s, u"data/Tollivar Data/"_s}) {
                if (platform::sendLocalMessage(m_sandbox.file(folder + place),
                                               platform::CopyDataId::CapturedText, text,
                                               std::chrono::seconds(10))) {
                    return true;
                }
            }
            return false;
        }();
        EXPECT_TRUE(isTaken);
    }

    QString m_window;
};

TEST_F(DroppedAddressProgram, becomesAnIconWhenTheAddressIsAccepted)
{
    drop();
    accept();
    test::waitUntil("the icon", [this] { return isIcon(); });
    end();
}

TEST_F(DroppedAddressProgram, staysWhenTheAddressIsNotWanted)
{
    drop();
    cancel();
    m_desktop.press(m_window, u"ctrl+n"_s);
    static_cast<void>(m_desktop.waitForWindow(kAddTask));
    EXPECT_FALSE(isIcon());
    end();
}

TEST_F(DroppedAddressProgram, theSecondMediumOfACapturedTextIsOfferedThoughTheFirstMadeAnIconOfIt)
{
    capture("PROTOCOL = 1\nURL = http://127.0.0.1:9/a.mp4\nTITLE = first\n\n"
            "PROTOCOL = 1\nURL = http://127.0.0.1:9/b.mp4\nTITLE = second\n\n");
    accept();
    accept();
    test::waitUntil("the icon", [this] { return isIcon(); });
    end();
}

} // namespace
} // namespace tollivar::app
