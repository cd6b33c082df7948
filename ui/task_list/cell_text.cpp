#include "ui/task_list/cell_text.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>

namespace tollivar::ui {

namespace {

/// More of a text than any cell shows; measuring it takes time with its length.
QString measurable(const QString &text)
{
    constexpr qsizetype kLongest = 1'000;
    return text.left(kLongest);
}

int innerWidth(int width)
{
    return std::max(0, width - 2 * kTextMargin);
}

/// A text broken into the lines that an area holds; the last one takes what is left over.
struct BrokenText {
    QStringList lines{};
    bool isCut = false;
};

BrokenText broken(const QString &whole, const QSize &area, const QFont &font)
{
    const QString text = measurable(whole);
    const QFontMetrics metrics(font);
    const int width = innerWidth(area.width());
    const auto room = std::max(1, area.height() / std::max(1, metrics.height()));
    BrokenText result;
    QTextLayout layout(text, font);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (result.lines.size() == room) {
            const auto rest = text.mid(line.textStart() - result.lines.back().size());
            result.lines.back() = metrics.elidedText(rest, Qt::ElideRight, width);
            result.isCut = true;
            break;
        }
        result.lines.append(text.mid(line.textStart(), line.textLength()));
    }
    layout.endLayout();
    for (QString &line : result.lines) {
        const QString word = line.trimmed();
        line = metrics.elidedText(word, Qt::ElideRight, width);
        result.isCut = result.isCut || line != word;
    }
    return result;
}

} // namespace

void paintLine(QPainter &painter, const QRect &area, Qt::Alignment alignment, const QString &text,
               Qt::TextElideMode shortening)
{
    if (text.isEmpty()) {
        return;
    }
    const QRect inner = area.adjusted(kTextMargin, 0, -kTextMargin, 0);
    const QString fitting =
        painter.fontMetrics().elidedText(measurable(text), shortening, innerWidth(area.width()));
    painter.drawText(inner, static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine,
                     fitting);
}

void paintWrapped(QPainter &painter, const QRect &area, const QString &text)
{
    if (text.isEmpty()) {
        return;
    }
    const auto lines = broken(text, area.size(), painter.font()).lines;
    const int height = painter.fontMetrics().height();
    QRect line(area.left(),
               area.top() + (area.height() - height * static_cast<int>(lines.size())) / 2,
               area.width(), height);
    for (const QString &each : lines) {
        painter.drawText(line, static_cast<int>(Qt::AlignCenter) | Qt::TextSingleLine, each);
        line.translate(0, height);
    }
}

bool isLineCut(const QString &text, int width, const QFont &font)
{
    return QFontMetrics(font).horizontalAdvance(measurable(text)) > innerWidth(width);
}

bool isWrappedCut(const QString &text, const QSize &area, const QFont &font)
{
    return broken(text, area, font).isCut;
}

} // namespace tollivar::ui
