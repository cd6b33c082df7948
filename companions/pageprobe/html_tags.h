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
    /// For a script or a title: what stands up to its closing tag.
    QString content;

    [[nodiscard]] QString attribute(const QString &name) const;
};

/// The opening tags of a page in order. Accepts any text; what is not closed ends with the page.
[[nodiscard]] std::vector<HtmlTag> readHtmlTags(QStringView page);

/// The five common named references, and numbers, decoded; others stay as they are.
[[nodiscard]] QString decodeReferences(QStringView text);

} // namespace tollivar::probe
