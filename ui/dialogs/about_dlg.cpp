#include "ui/dialogs/about_dlg.h"

#include "platform/build_config.h"

#include <QLabel>
#include <QStringList>

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

/// A line for each library, then the programs that do part of the work.
QString librariesText()
{
    QStringList lines;
    for (const platform::build::Library &library : platform::build::kLibraries) {
        lines.append(u"%1 %2 (%3)"_s.arg(library.name, library.version, library.licence));
    }
    lines.append(u"ffmpeg, Chromium, yt-dlp"_s);
    return lines.join(u'\n');
}

} // namespace

AboutDialog::AboutDialog(QWidget *owner, const DialogTexts &texts) : CUILibDialog(owner)
{
    createFace(u"DialogAbout.xml"_s, kControls);
    applyDialogTexts(*this, u"DIALOG_ABOUT"_s, texts);
    control<QLabel>("textVersion"_L1)
        .setText(QString(platform::build::kProductName) + u' ' + platform::build::kVersion);
    control<QLabel>("textLibraries"_L1).setText(librariesText());
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
