#include "app/language/string_table.h"

#include <array>

namespace tollivar::language {

namespace {

// "Invaild" stays: whoever searches for the message finds what others wrote of it.
constexpr std::array kTexts = {
    BuiltInText{u"strTipAddFile", u"Add URL"},
    BuiltInText{u"strTipStartTask", u"Start Task(s)"},
    BuiltInText{u"strTipStopTask", u"Stop Task(s)"},
    BuiltInText{u"strTipRemoveTask", u"Remove Task(s)"},
    BuiltInText{u"strTipClearAll", u"Clear All Completed Tasks"},
    BuiltInText{u"strTipPlay", u"Play Flash Video"},
    BuiltInText{u"strTipExit", u"Exit Program"},
    BuiltInText{u"strTipMinimize", u"Minimize"},
    BuiltInText{u"strTipClose", u"Minimize to System Tray"},
    BuiltInText{u"strTipBrowser", u"Browser to capture flash video"},
    BuiltInText{u"strColNum", u"No."},
    BuiltInText{u"strColName", u"Name"},
    BuiltInText{u"strColSize", u"Size"},
    BuiltInText{u"strColTimeLeft", u"Time Left"},
    BuiltInText{u"strColSpeed", u"Speed"},
    BuiltInText{u"strColTimeElapsed", u"Time Elapsed"},
    BuiltInText{u"strColTarget", u"Target"},
    BuiltInText{u"strColStatus", u"Status"},
    BuiltInText{u"strColMode", u"Download Mode"},
    BuiltInText{u"strWaiting", u"Waiting"},
    BuiltInText{u"strStopped", u"Stopped"},
    BuiltInText{u"strConverting", u"Converting"},
    BuiltInText{u"strCopyDetails", u"Copy Details"},
    BuiltInText{u"strCompleted", u"Completed"},
    BuiltInText{u"strFailed", u"Failed"},
    BuiltInText{u"strDownloading", u"Downloading"},
    BuiltInText{u"strParsing", u"Parsing"},
    BuiltInText{u"strMore", u"More>>"},
    BuiltInText{u"strLess", u"Less<<"},
    BuiltInText{u"strModeFLVAuto", u"Download Video"},
    BuiltInText{u"strModeSWFAuto", u"Download Flash"},
    BuiltInText{u"strModeYoutube", u"Download Youtube"},
    BuiltInText{u"strModeDirectly", u"Download File Directly"},
    BuiltInText{u"strSelectFolder", u"Select Destination Folder"},
    BuiltInText{u"strMsgInvalidFolder",
                u"Invaild Folder Path, please select a valid location to save file."},
    BuiltInText{u"strMsgInvalidFolder1", u"The folder"},
    BuiltInText{u"strMsgInvalidFolder2", u"cannot be used."},
    BuiltInText{u"strMsgInvalidFileName",
                u"A file name cannot contain any of these characters: \\ / : * ? \" < > |"},
    BuiltInText{u"strMsgRemoveAll", u"Are you sure to remove all completed tasks?"},
    BuiltInText{u"strMsgCompletedTasks",
                u"Some of the selected tasks are completed. Do you want to start them again?"},
    BuiltInText{u"strMsgConvertAll", u"Do you want to convert all selected tasks?"},
    BuiltInText{u"strMsgInvalidURL", u"Invalid URL, the URL should like this:"},
    BuiltInText{u"strTipGeneralSetting", u"General Settings"},
    BuiltInText{u"strTipAdvancedSetting", u"Advanced Settings"},
    BuiltInText{u"strLanguage", u"Language"},
    BuiltInText{u"strOK", u"OK"},
    BuiltInText{u"strCancel", u"Cancel"},
    BuiltInText{u"strChange", u"Change"},
    BuiltInText{u"strExit", u"Exit"},
    BuiltInText{u"strNoteFlashOld",
                u"{b}Tollivar{/b}  Your flash player is too old. {a}What to do{/a}"},
    BuiltInText{u"strMsgFlashOld1", u"Your current flash player version is too old"},
    BuiltInText{u"strMsgFlashOld2",
                u"you may need to upgrade your flash player to download videos."},
    BuiltInText{u"strMsgFlashVersion", u"Your current flash player for IE is"},
    // Texts of the windows beyond that table.
    BuiltInText{u"strBtnAddUrl", u"Add URL"},
    BuiltInText{u"strBtnBrowser", u"Browser"},
    BuiltInText{u"strBtnPlayer", u"Player"},
    BuiltInText{u"strBtnStart", u"Start"},
    BuiltInText{u"strBtnStop", u"Stop"},
    BuiltInText{u"strBtnRemove", u"Remove"},
    BuiltInText{u"strBtnClearAll", u"Clear All"},
    BuiltInText{u"strBtnHome", u"Home"},
    BuiltInText{u"strBtnMenu", u"Menu"},
    BuiltInText{u"strFilterAll", u"All"},
    BuiltInText{u"strFilterDownloading", u"Downloading"},
    BuiltInText{u"strFilterDownloaded", u"Downloaded"},
    BuiltInText{u"strTipMaximize", u"Maximize"},
    BuiltInText{u"strTipRestore", u"Restore"},
    BuiltInText{u"strTotals", u"%1 downloading, %2 waiting"},
    BuiltInText{u"strListName", u"Tasks"},
    BuiltInText{u"strEmptyList", u"Paste, drop or type an address"},
    BuiltInText{u"strEmptyDownloading", u"Nothing is being downloaded"},
    BuiltInText{u"strEmptyDownloaded", u"Nothing downloaded yet"},
    BuiltInText{u"strDropHint", u"Let go to add a task"},
    BuiltInText{u"strDropZone", u"Drop Zone"},
    BuiltInText{u"strTrayBalloon",
                u"Tollivar is still running. You can double click on this icon to open it again. "
                u"You can click \"Exit\" button to close the program."},
    BuiltInText{u"strNoTray",
                u"This desktop has no notification area, so the window is minimized instead. Use "
                u"\"Exit\" to close the program."},
    BuiltInText{u"strNoBrowser",
                u"No browser of the Chromium family is installed. Without one, pages are only read "
                u"as text, and few show their videos that way. Please install \"chromium\"."},
    BuiltInText{u"strNoClipboardWatch",
                u"On this desktop the clipboard cannot be watched in the background."},
    BuiltInText{u"strNoConverter", u" Quenmoor Converter has not been installed, please install it "
                                   u"with the setup package."},
    BuiltInText{u"strSkinProblems", u"The skin has faults; the built-in look stands in for them:"},
    BuiltInText{u"strUpdater", u"Tollivar Updater"},
    // The missing blank tells news from what was noticed before.
    BuiltInText{u"strMsgUpdateNews",
                u"A new version(%1) of Tollivar is available,would you like to download it "
                u"now?\r\n\r\nWhat's New?\r\n%2\r\n\r\nClick Yes to download, click No to cancel."},
    BuiltInText{u"strMsgUpdateKnown",
                u"A new version(%1) of Tollivar is available, would you like to download it "
                u"now?\r\n\r\nWhat's New?\r\n%2\r\n\r\nClick Yes to download, click No to cancel."},
    BuiltInText{u"strMsgNoUpdate", u"There is no new update available."},
    BuiltInText{u"strMsgNoServer",
                u"Can not connect to the server, please check your network connection."},
    BuiltInText{u"strMsgTasksInUse", u"A tollivar-cli works with the tasks in %1. Try again?"},
    BuiltInText{u"strYes", u"&Yes"},
    BuiltInText{u"strNo", u"&No"},
    BuiltInText{u"strRetry", u"Retry"},
    BuiltInText{u"strClose", u"Close"},
};

} // namespace

std::span<const BuiltInText> builtInTexts()
{
    return kTexts;
}

} // namespace tollivar::language
