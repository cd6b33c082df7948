#include "ui/dialogs/about_dlg.h"

#include "platform/build_config.h"

#include <QLabel>

#include <array>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kControls = {
    DuiLib::RequiredControl{"Label"_L1, "textVersion"_L1},
    DuiLib::RequiredControl{"Label"_L1, "textLibraries"_L1},
    DuiLib::RequiredControl{"Text"_L1, "textHomePage"_L1},
    DuiLib::RequiredControl{"Button"_L1, "btnOK"_L1},
    DuiLib::RequiredControl{"Button"_L1, "btnClose"_L1},
};

} // namespace

AboutDialog::AboutDialog(QWidget *owner, const DialogTexts &texts) : CUILibDialog(owner)
{
    createFace(u"DialogAbout.xml"_s, kControls);
    applyDialogTexts(*this, u"DIALOG_ABOUT"_s, texts);
    control<QLabel>("textVersion"_L1)
        .setText(QString(platform::build::kProductName) + u' ' + platform::build::kVersion);
    control<QLabel>("textLibraries"_L1)
        .setText(u"Qt "_s + QString::fromLatin1(qVersion()) +
                 u", SQLite, libcurl, librtmp, libzip, libcanberra, ffmpeg, Chromium"_s);
}

void AboutDialog::Notify(const DuiLib::SkinEvent &event)
{
    if (event.type == DuiLib::events::kLink) {
        Q_EMIT homePageWanted();
    } else if (event.type == DuiLib::events::kClick) {
        accept();
    }
}

} // namespace tollivar::ui
