#pragma once

#include <QString>
#include <QStringView>

#include <map>
#include <vector>

namespace tollivar::probe {

/// One opening tag: its name and attributes, names in lower case, values decoded.
struct HtmlTag {
    QString name;
    std::map<QString, QString> attributes;
    /// Of a title, script, style or text area: what stands up to its closing tag.
    QString content;

    [[nodiscard]] QString attribute(const QString &name) const;
};

/// The opening tags of a page in order, up to 200,000 of them with 200 attributes each. Accepts any
/// text, and takes time in proportion to it; what is not closed ends with the page.
[[nodiscard]] std::vector<HtmlTag> readHtmlTags(QStringView page);

/// The common named references, and numbers, decoded; others stay as they are.
[[nodiscard]] QString decodeReferences(QStringView text);

} // namespace tollivar::probe
