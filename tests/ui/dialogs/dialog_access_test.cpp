#include "tests/ui/window_world.h"
#include "ui/dialogs/about_dlg.h"
#include "ui/dialogs/add_task_dlg.h"
#include "ui/dialogs/cant_play_dlg.h"
#include "ui/dialogs/checking_dlg.h"
#include "ui/dialogs/confirm_delete_dlg.h"
#include "ui/dialogs/settings_dialog.h"
#include "ui/notify/task_notify_dlg.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <map>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

/// The dialogs as somebody meets them who does not see them, or has no mouse.
class DialogAccess : public ::testing::Test {
protected:
    using Look = std::function<void(const QWidget &)>;

    void SetUp() override { m_world.open(); }

    /// Looks at each dialog, in the current language.
    void eachDialog(const Look &look)
    {
        const WindowTexts texts = m_world.texts();
        look(CAddTaskDlg(nullptr, m_world.settings(), texts, {}));
        look(CConfirmDeleteDlg(nullptr, texts.dialog));
        settings::COptionsManager options(m_world.settings());
        options.LoadAll();
        look(CSettingsDialog(nullptr, options, texts, ClipboardWatch::InBackground));
        look(CTaskNotifyDlg({u"/videos/"_s, u"clip"_s, u".mp4"_s}, texts.dialog));
        look(CCantPlayDlg(nullptr, m_world.settings(), texts, {}));
        look(CheckingDialog(nullptr, texts.dialog));
        look(AboutDialog(nullptr, texts.dialog));
    }

    /// The names of the controls that a person can use, as a screen reader says them.
    static std::map<QString, QString> spokenNames(const QWidget &dialog)
    {
        std::map<QString, QString> names;
        const auto inside = dialog.findChildren<QWidget *>(QRegularExpression(u"^[^q]"_s));
        for (QWidget *widget : inside) {
            const bool isUsed = qobject_cast<QAbstractButton *>(widget) != nullptr ||
                                qobject_cast<QComboBox *>(widget) != nullptr ||
                                qobject_cast<QLineEdit *>(widget) != nullptr ||
                                qobject_cast<QProgressBar *>(widget) != nullptr;
            if (isUsed) {
                names[widget->objectName()] =
                    QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
            }
        }
        return names;
    }

    test::WindowWorld m_world;
};

TEST_F(DialogAccess, everyControlHasANameInEveryLanguage)
{
    const QStringList languages = m_world.texts().languages();
    ASSERT_EQ(languages.size(), 11);
    for (const QString &language : languages) {
        m_world.texts().applyLanguage(language);
        eachDialog([&language](const QWidget &dialog) {
            const auto names = spokenNames(dialog);
            EXPECT_FALSE(names.empty());
            for (const auto &[control, name] : names) {
                EXPECT_FALSE(name.isEmpty())
                    << control.toStdString() << " of " << dialog.windowTitle().toStdString()
                    << " in " << language.toStdString();
            }
        });
    }
}

TEST_F(DialogAccess, namesAndTipsOfImagesFollowTheLanguage)
{
    m_world.texts().applyLanguage(u"Deutsch"_s);
    eachDialog([](const QWidget &dialog) {
        const auto *close = dialog.findChild<QToolButton *>(u"btnClose"_s);
        EXPECT_EQ(close->accessibleName(), u"Schließen"_s) << dialog.windowTitle().toStdString();
        EXPECT_EQ(close->toolTip(), u"Schließen"_s);
        if (const auto *quality = dialog.findChild<QComboBox *>(u"cbYoutubeMode"_s)) {
            EXPECT_EQ(quality->accessibleName(), u"Qualität"_s);
        }
    });
}

TEST_F(DialogAccess, aRingShowsWhichBoxOrOptionHasTheKeyboard)
{
    const QColor ring(0x7f, 0xb0, 0xe4);
    const auto ringPixels = [&ring](QWidget &control) {
        const QImage picture = control.grab().toImage();
        int count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                count += picture.pixelColor(x, y) == ring ? 1 : 0;
            }
        }
        return count;
    };
    CConfirmDeleteDlg dialog(nullptr, m_world.texts().dialog);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto &option = *dialog.findChild<QRadioButton *>(u"radioDelTaskAll"_s);
    dialog.setFocus();
    EXPECT_EQ(ringPixels(option), 0);
    option.setFocus();
    EXPECT_GT(ringPixels(option), option.width());
}

} // namespace tollivar::ui
