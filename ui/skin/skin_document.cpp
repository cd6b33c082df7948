#include "ui/skin/skin_document.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace tollivar::DuiLib {

QString SkinElement::attribute(QStringView name) const
{
    const auto found =
        std::find_if(attributes.begin(), attributes.end(),
                     [name](const SkinAttribute &each) { return each.name == name; });
    return found == attributes.end() ? QString() : found->value;
}

namespace {

class Reader {
public:
    Reader(const QByteArray &xml, QString fileName) : m_xml(xml), m_fileName(std::move(fileName)) {}

    tl::expected<SkinElement, SkinProblem> read()
    {
        if (!m_xml.readNextStartElement()) {
            return tl::unexpected(brokenForm());
        }
        if (m_xml.name() != u"Window") {
            return tl::unexpected(problem(QStringLiteral("the root element is not Window")));
        }
        SkinElement root;
        if (!readElement(root, 1)) {
            return tl::unexpected(m_problem);
        }
        // What follows the root has to be well-formed too.
        while (!m_xml.atEnd()) {
            m_xml.readNext();
        }
        if (m_xml.hasError()) {
            return tl::unexpected(brokenForm());
        }
        return root;
    }

private:
    bool readElement(SkinElement &element, int depth)
    {
        element.type = m_xml.name().toString();
        element.line = line();
        const auto written = m_xml.attributes();
        for (const auto &attribute : written) {
            element.attributes.push_back(
                {attribute.name().toString(), attribute.value().toString()});
        }
        if (depth > kMaximumSkinDepth) {
            return refuse(problem(QStringLiteral("elements are nested too deeply")));
        }
        if (++m_count > kMaximumSkinElements) {
            return refuse(problem(QStringLiteral("too many elements")));
        }
        while (m_xml.readNextStartElement()) {
            if (!readElement(element.children.emplace_back(), depth + 1)) {
                return false;
            }
        }
        return m_xml.hasError() ? refuse(brokenForm()) : true;
    }

    bool refuse(SkinProblem why)
    {
        m_problem = std::move(why);
        return false;
    }

    [[nodiscard]] int line() const { return static_cast<int>(m_xml.lineNumber()); }

    [[nodiscard]] SkinProblem problem(const QString &text) const
    {
        return {m_fileName, line(), text};
    }

    [[nodiscard]] SkinProblem brokenForm() const
    {
        const QString reason = m_xml.errorString();
        return problem(reason.isEmpty() ? QStringLiteral("there is no element") : reason);
    }

    QXmlStreamReader m_xml;
    QString m_fileName;
    SkinProblem m_problem;
    int m_count = 0;
};

} // namespace

tl::expected<SkinElement, SkinProblem> readSkinDocument(const QByteArray &xml,
                                                        const QString &fileName)
{
    if (xml.size() > kMaximumSkinFile) {
        return tl::unexpected(SkinProblem{fileName, 0, QStringLiteral("the file is too large")});
    }
    return Reader(xml, fileName).read();
}

} // namespace tollivar::DuiLib
