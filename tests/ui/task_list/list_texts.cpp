#include "tests/ui/task_list/list_texts.h"

#include <QHash>

#include <gtest/gtest.h>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

QString englishText(const QString &id)
{
    static const QHash<QString, QString> texts = {
        {u"strColNum"_s, u"No."_s},
        {u"strColName"_s, u"Name"_s},
        {u"strColStatus"_s, u"Status"_s},
        {u"strColSpeed"_s, u"Speed"_s},
        {u"strColTarget"_s, u"Target"_s},
        {u"strColMode"_s, u"Download Mode"_s},
        {u"strWaiting"_s, u"Waiting"_s},
        {u"strStopped"_s, u"Stopped"_s},
        {u"strConverting"_s, u"Converting"_s},
        {u"strParsing"_s, u"Parsing"_s},
        {u"strDownloading"_s, u"Downloading"_s},
        {u"strCompleted"_s, u"Completed"_s},
        {u"strFailed"_s, u"Failed"_s},
        {u"strModeFLVAuto"_s, u"Download Video"_s},
        {u"strModeYoutube"_s, u"Download Youtube"_s},
        {u"strModeSWFAuto"_s, u"Download Flash"_s},
        {u"strModeDirectly"_s, u"Download File Directly"_s},
        {u"strEmptyList"_s, u"Paste, drop or type an address"_s},
        {u"strEmptyDownloading"_s, u"Nothing is being downloaded"_s},
        {u"strEmptyDownloaded"_s, u"Nothing downloaded yet"_s},
        {u"strTipAddFile"_s, u"Add URL"_s},
        {u"strListName"_s, u"Tasks"_s},
    };
    EXPECT_TRUE(texts.contains(id)) << "a text that nobody has: " << id.toStdString();
    return texts.value(id);
}

} // namespace tollivar::ui
