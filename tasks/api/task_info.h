#pragma once

#include "tasks/api/conversion_options.h"

#include <QString>

#include <cstdint>

namespace tollivar::tasks {

/// `TaskInfo::dwSize` while the size is not known.
inline constexpr std::uint32_t kUnknownSize = 0xFFFFFFFF;

/// `TaskInfo::nProtocol` of a media address that is fetched over HTTP; all others are RTMP, and the
/// program itself writes this one.
inline constexpr int kProtocolHttp = 1;
inline constexpr int kProtocolRtmp = 0;

/// The record of one download: what was asked for, what was found, where the result goes and how
/// far it got.
///
/// A plain value, copied whole between manager, worker, list and database; the field names are the
/// column names of the task table. The full path of the file is folder + name + type, joined with
/// nothing in between, so the folder carries its trailing separator.
struct TaskInfo {
    QString strOriURL;      ///< the address as the person gave it
    QString strDownloadUrl; ///< the media address that is fetched
    QString strOutputFolder;
    QString strOutputName;
    QString strFileType = QStringLiteral(".flv"); ///< extension with its dot
    QString strCookies;
    QString strAgent;
    QString strReferer;
    int bAutoRename = 1; ///< not 0: name the file after the page's title
    ConversionOptions m_ConvOpts;
    std::uint32_t dwSize = kUnknownSize;
    std::uint32_t dwDownloadSize = 0; ///< bytes written so far
    int bFileCreated = 0;             ///< not 0: an earlier run made the file; its name is reused
    int nModeLow = 0;                 ///< download method, see download_mode.h
    int nModeHigh = 0;                ///< quality, see download_mode.h
    int nProtocol = kProtocolHttp;
    QString strApp;
    QString strFlashVer;
    QString strSwfUrl;
    QString strTcUrl;
    QString strPageUrl;
    QString strPlayPath;
    int nCompletedStatus = 0; ///< not 0 once the download has finished

    bool operator==(const TaskInfo &) const = default;

    [[nodiscard]] QString outputPath() const
    {
        return strOutputFolder + strOutputName + strFileType;
    }

    /// True when a run made the file and all of it came, whatever the task's state says.
    [[nodiscard]] bool isFileComplete() const
    {
        return bFileCreated != 0 && dwSize <= dwDownloadSize;
    }
};

} // namespace tollivar::tasks
