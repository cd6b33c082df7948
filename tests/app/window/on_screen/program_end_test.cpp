#include "tests/app/window/on_screen/program_fixture.h"
#include "ui/notify/task_notify_dlg.h"

#include <QApplication>

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace tollivar::app {
namespace {

using testing::ElementsAre;

/// Notes which of the program's windows leave the screen, and whether popups outlive them.
class Leaving final : public QObject {
public:
    Leaving() { qApp->installEventFilter(this); }
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Hide) {
            note<ui::CTollivarDlg>(watched, "window");
            note<ui::CDragDlg>(watched, "drop zone");
        }
        return false;
    }

    std::vector<std::string> windows;
    bool popupsStood = true;

private:
    template<typename Window>
    void note(QObject *watched, const char *name)
    {
        if (qobject_cast<Window *>(watched) != nullptr) {
            windows.emplace_back(name);
            popupsStood = popupsStood && ui::CTaskNotifyDlg::newest() != nullptr;
        }
    }
};

} // namespace

using ProgramEnd = ProgramTest;

TEST_F(ProgramEnd, takesTheWindowOffTheScreenFirstThenTheDropZoneThenPopups)
{
    start();
    static_cast<void>(complete("/a.mp4"));
    ASSERT_TRUE(window().isVisible());
    ASSERT_TRUE(dropZone().isVisible());
    const Leaving leaving;
    end();
    EXPECT_THAT(leaving.windows, ElementsAre("window", "drop zone"));
    EXPECT_TRUE(leaving.popupsStood);
    EXPECT_EQ(ui::CTaskNotifyDlg::newest(), nullptr);
}

} // namespace tollivar::app
