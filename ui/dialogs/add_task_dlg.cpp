#include "ui/dialogs/add_task_dlg.h"

#include "fetch/text/file_naming.h"
#include "fetch/text/site_url.h"
#include "platform/build_config.h"
#include "platform/file_ops.h"
#include "ui/dialog/message_box.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QLayout>
#include <QLineEdit>
#include <QToolButton>

#include <array>

namespace tollivar::ui {

using namespace Qt::StringLiterals;
using convert::ProfileOption;
using DuiLib::RequiredControl;

namespace {

constexpr std::array kControls = {
    RequiredControl{"Edit"_L1, "editURL"_L1},
    RequiredControl{"Edit"_L1, "editOutputFolder"_L1},
    RequiredControl{"Edit"_L1, "editFileName"_L1},
    RequiredControl{"CheckBox"_L1, "chkRename"_L1},
    RequiredControl{"Combo"_L1, "cbMode"_L1},
    RequiredControl{"Combo"_L1, "cbYoutubeMode"_L1},
    RequiredControl{"Combo"_L1, "cbProfile"_L1},
    RequiredControl{"Combo"_L1, "cbResolution"_L1},
    RequiredControl{"Combo"_L1, "cbVideoCodec"_L1},
    RequiredControl{"Combo"_L1, "cbVideoBitrate"_L1},
    RequiredControl{"Combo"_L1, "cbAudioBitrate"_L1},
    RequiredControl{"VerticalLayout"_L1, "convertOptions"_L1},
    RequiredControl{"Button"_L1, "btnMore"_L1},
    RequiredControl{"Button"_L1, "btnBrowse"_L1},
    RequiredControl{"Button"_L1, "btnDownload"_L1},
    RequiredControl{"Button"_L1, "btnCancel"_L1},
    RequiredControl{"Button"_L1, "btnClose"_L1},
};

/// The lists of the conversion section, in the order in which a profile fills them.
struct OptionList {
    QLatin1StringView name;
    ProfileOption option = ProfileOption::VideoSize;
};
constexpr std::array kOptionLists = {
    OptionList{"cbAudioBitrate"_L1, ProfileOption::AudioBitRate},
    OptionList{"cbVideoBitrate"_L1, ProfileOption::VideoBitRate},
    OptionList{"cbResolution"_L1, ProfileOption::VideoSize},
    OptionList{"cbVideoCodec"_L1, ProfileOption::VideoCodec},
};

/// Places in "cbMode".
constexpr int kFlashIndex = 1;
constexpr int kDirectIndex = 2;

/// How wide "cbMode" is beside the quality list, and alone.
constexpr int kNarrowMode = 255;
constexpr int kWideMode = 360;

/// What a folder picker's answer without a path becomes, so that it is refused as a folder.
const QString kInvalidFolder = u"INVALID FOLDER"_s;

} // namespace

CAddTaskDlg::CAddTaskDlg(QWidget *owner, const settings::SettingsStore &settings,
                         const WindowTexts &texts, const Preset &preset)
    : CUILibDialog(owner)
    , m_settings(settings)
    , m_texts(texts)
    , m_profiles(convert::ProfileTable::BuildProfiles())
{
    m_task.m_ConvOpts.m_csProfileName = convert::ProfileTable::defaultName();
    createFace(u"DialogAddTask.xml"_s, kControls);
    applyDialogTexts(*this, u"DIALOG_ADDTASK"_s, m_texts.dialog);
    control<QLineEdit>("editOutputFolder"_L1).setText(m_settings.GetLastFolder());
    control<QLineEdit>("editURL"_L1).setText(preset.address);
    if (!preset.fileName.isEmpty()) {
        lockToDirectFile(preset.fileName);
    }
    showMore(false);
    fillProfiles();
    checkVideoSite();
    control<QLineEdit>("editURL"_L1).setFocus();
}

bool CAddTaskDlg::setAddress(const QString &address)
{
    auto &field = control<QLineEdit>("editURL"_L1);
    if (!field.isEnabled()) {
        return false;
    }
    field.setText(address);
    return true;
}

void CAddTaskDlg::lockToDirectFile(const QString &fileName)
{
    auto &name = control<QLineEdit>("editFileName"_L1);
    name.setText(fileName);
    name.setEnabled(true);
    auto &rename = control<QCheckBox>("chkRename"_L1);
    rename.setChecked(false);
    rename.setEnabled(false);
    auto &mode = control<QComboBox>("cbMode"_L1);
    mode.addItem(m_texts.text(u"strModeDirectly"_s));
    mode.setCurrentIndex(kDirectIndex);
    mode.setEnabled(false);
    control<QLineEdit>("editURL"_L1).setEnabled(false);
}

void CAddTaskDlg::fillProfiles()
{
    auto &list = control<QComboBox>("cbProfile"_L1);
    list.addItems(m_profiles.names());
    const QString chosen = m_task.m_ConvOpts.m_csProfileName;
    list.setCurrentIndex(std::max(0, list.findText(chosen)));
    applyProfile(chosen);
}

void CAddTaskDlg::applyProfile(const QString &name)
{
    convert::ConversionProfile profile;
    if (!m_profiles.GetProfile(name, profile) ||
        !m_profiles.ApplyProfileDefaults(name, m_task.m_ConvOpts)) {
        return;
    }
    for (const auto &[listName, option] : kOptionLists) {
        auto &list = control<QComboBox>(listName);
        list.clear();
        list.addItems(convert::orderedForScreen(profile.values(option).choices));
        list.setCurrentIndex(list.findText(m_task.m_ConvOpts.*convert::fieldOf(option)));
    }
}

void CAddTaskDlg::checkVideoSite()
{
    const QString address = control<QLineEdit>("editURL"_L1).text().toLower();
    auto &mode = control<QComboBox>("cbMode"_L1);
    auto &quality = control<QComboBox>("cbYoutubeMode"_L1);
    const bool offersQuality =
        address.contains(platform::build::kVideoSiteDomain) && mode.currentIndex() == 0;
    if (offersQuality) {
        quality.setCurrentIndex(1);
    }
    // Never both wide and shown: the window would grow for the two, and stay so.
    quality.hide();
    mode.setFixedWidth(offersQuality ? kNarrowMode : kWideMode);
    quality.setVisible(offersQuality);
}

void CAddTaskDlg::showMore(bool isExpanded)
{
    m_isExpanded = isExpanded;
    learnPlace();
    auto &options = control<QWidget>("convertOptions"_L1);
    options.setVisible(isExpanded);
    control<QToolButton>("btnMore"_L1)
        .setText(m_texts.text(isExpanded ? u"strLess"_s : u"strMore"_s));
    const QSize bound = isExpanded ? paintManager().GetMaxInfo() : paintManager().GetMinInfo();
    // What was hidden or shown counts for the smallest size only after a new layout, which comes
    // by itself no earlier than with the next events.
    options.parentWidget()->layout()->invalidate();
    options.parentWidget()->updateGeometry();
    layout()->activate();
    resize(width(), bound.height());
}

void CAddTaskDlg::chooseFolder()
{
    auto &field = control<QLineEdit>("editOutputFolder"_L1);
    QFileDialog picker(this, m_texts.text(u"strSelectFolder"_s), field.text());
    picker.setFileMode(QFileDialog::Directory);
    picker.setOption(QFileDialog::ShowDirsOnly);
    if (picker.exec() != QDialog::Accepted) {
        return;
    }
    const QString folder = picker.selectedFiles().value(0);
    field.setText(folder.isEmpty() ? kInvalidFolder : folder);
}

void CAddTaskDlg::Notify(const DuiLib::SkinEvent &event)
{
    if (event.type == DuiLib::events::kClick) {
        handleClick(event.name);
    } else if (event.type == DuiLib::events::kItemSelect) {
        handleChoice(event.name);
    } else if (event.type == DuiLib::events::kTextChanged && event.name == "editURL"_L1) {
        checkVideoSite();
    }
}

void CAddTaskDlg::handleClick(const QString &name)
{
    if (name == "btnDownload"_L1) {
        accept();
    } else if (name == "btnCancel"_L1 || name == "btnClose"_L1) {
        reject();
    } else if (name == "btnBrowse"_L1) {
        chooseFolder();
    } else if (name == "chkRename"_L1) {
        control<QLineEdit>("editFileName"_L1)
            .setEnabled(!control<QCheckBox>("chkRename"_L1).isChecked());
    } else if (name == "btnMore"_L1) {
        showMore(!m_isExpanded);
    }
}

void CAddTaskDlg::handleChoice(const QString &name)
{
    if (name == "cbMode"_L1) {
        checkVideoSite();
        return;
    }
    if (name == "cbProfile"_L1) {
        applyProfile(control<QComboBox>("cbProfile"_L1).currentText());
        return;
    }
    for (const auto &[listName, option] : kOptionLists) {
        const auto &list = control<QComboBox>(listName);
        if (name == listName && list.currentIndex() >= 0) {
            m_task.m_ConvOpts.*convert::fieldOf(option) = list.currentText();
        }
    }
}

void CAddTaskDlg::accept()
{
    const QString refusal = readFields();
    if (refusal.isEmpty()) {
        CUILibDialog::accept();
        return;
    }
    MessageBox::warning(this, QString(platform::build::kProductName), refusal);
}

QString CAddTaskDlg::readFields()
{
    const QString typed = control<QLineEdit>("editURL"_L1).text().trimmed();
    QString folder = control<QLineEdit>("editOutputFolder"_L1).text().trimmed();
    if (typed.isEmpty()) {
        return m_texts.text(u"strMsgInvalidURL"_s) + u' ' + platform::build::kExampleWatchPage;
    }
    const QString address = fetch::ensureScheme(typed);
    m_task.strOriURL = address;
    if (!platform::makeFolders(folder)) {
        return m_texts.text(u"strMsgInvalidFolder"_s);
    }
    m_settings.SetLastFolder(folder);
    m_task.strOutputFolder = folder.endsWith(u'/') ? folder : folder + u'/';
    const bool isAutomatic = control<QCheckBox>("chkRename"_L1).isChecked();
    QString name = control<QLineEdit>("editFileName"_L1).text().trimmed();
    if (isAutomatic || name.isEmpty()) {
        name = fetch::nameBeforeTitle(address);
    }
    m_task.strOutputName = fetch::withoutForbiddenCharacters(name, u'-');
    m_task.bAutoRename = isAutomatic ? 1 : 0;
    readMode();
    return {};
}

void CAddTaskDlg::readMode()
{
    const auto &quality = control<QComboBox>("cbYoutubeMode"_L1);
    switch (control<QComboBox>("cbMode"_L1).currentIndex()) {
    case kFlashIndex:
        m_task.nModeLow = static_cast<int>(tasks::DownloadMethod::Flash);
        m_task.strFileType = u".swf"_s;
        break;
    case kDirectIndex:
        m_task.nModeLow = static_cast<int>(tasks::DownloadMethod::Direct);
        m_task.strFileType.clear();
        break;
    default:
        m_task.nModeLow = static_cast<int>(tasks::DownloadMethod::Video);
        m_task.strFileType = u".flv"_s;
        break;
    }
    m_task.nModeHigh = quality.isVisibleTo(this) ? quality.currentIndex() : 0;
    if (fetch::isStreamAddress(m_task.strOriURL)) {
        // A stream is its own media, and comes as flash video, whatever the page modes say.
        m_task.nModeLow = static_cast<int>(tasks::DownloadMethod::Direct);
        m_task.nProtocol = tasks::kProtocolRtmp;
        m_task.strDownloadUrl = m_task.strOriURL;
        m_task.strFileType = u".flv"_s;
    }
}

} // namespace tollivar::ui
