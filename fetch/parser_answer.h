#pragma once

#include <QString>
#include <QStringView>

#include <vector>

namespace tollivar::fetch {

/// One medium as a companion program describes it; the format is in docs/formats/parser-answer.md.
/// Values stand as they came and are hostile until checked.
struct AnswerRecord {
    int protocol = 0; ///< 1 is HTTP, anything else RTMP
    QString app;
    QString flashVer;
    QString swfUrl;
    QString tcUrl;
    QString pageUrl;
    QString playPath;
    QString address;
    QString title;
    QString typeDescription; ///< "Flash Video (*.flv)"
    QString extension;       ///< ".flv", from the description
    QString folder;
    QString cookies;
    QString agent;
    QString referer;
    QString location;

    bool operator==(const AnswerRecord &) const = default;
};

/// Reads the key/value lines of a companion into records, in order. A line that begins with no key
/// ends the record, so an empty line before the first key gives an empty record, and a record that
/// no line ends is lost.
[[nodiscard]] std::vector<AnswerRecord> readAnswer(QStringView text);

} // namespace tollivar::fetch
