#include "ui/skin/dialog_builder.h"
#include "ui/skin/paint_manager.h"

#include <QDir>

#include <gtest/gtest.h>

namespace tollivar::DuiLib {

using namespace Qt::StringLiterals;

TEST(DefaultSkin, everyWindowIsBuiltWithoutAProblem)
{
    CPaintManagerUI::SetInstance();
    CPaintManagerUI::SetResourcePath(QStringLiteral(TOLLIVAR_SOURCE_SKIN));
    const auto files = QDir(QStringLiteral(TOLLIVAR_SOURCE_SKIN)).entryList({u"*.xml"_s});
    EXPECT_GE(files.size(), 4);
    for (const QString &file : files) {
        QWidget window;
        CPaintManagerUI manager;
        manager.Init(window);
        CDialogBuilder::Create(file, {}, window, manager);
        for (const auto &problem : CPaintManagerUI::takeProblems()) {
            ADD_FAILURE() << problem.toString().toStdString();
        }
    }
    CPaintManagerUI::SetInstance();
}

} // namespace tollivar::DuiLib
