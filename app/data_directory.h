#pragma once

#include "platform/result.h"

#include <QString>

namespace tollivar::app {

/// Absolute paths of the person's data files; docs/formats/ describes them.
struct DataPaths {
    QString directory;
    QString commonDirectory;
    QString settings;        ///< "settings.ini"
    QString update;          ///< "update.ini"
    QString updateInTransit; ///< "tmpupdate.ini"
    QString legacyTasks;     ///< "dtasks.ini"
    QString tasks;           ///< "dtasks.db"
    QString installation;    ///< "installdata.ini", in the common directory
};

/// Where the data files are; makes nothing.
/// Errors: AskUser with the message for the person.
[[nodiscard]] platform::Result<DataPaths> locateData();

/// Makes the directories, replaces a settings file of an older format by an empty one, and keeps
/// the installation record: a new or just upgraded installation has the update check switched on.
/// Errors: AskUser with the message for the person.
[[nodiscard]] platform::Result<DataPaths> setUpData();

} // namespace tollivar::app
