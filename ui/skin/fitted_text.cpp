#include "ui/skin/fitted_text.h"

#include <QFontMetrics>
#include <QTextLayout>

#include <algorithm>

namespace tollivar::DuiLib {

namespace {

QStringList wrapped(const QString &text, const QFont &font, int width)
{
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines.append(text.sliced(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    return lines;
}

} // namespace

QStringList fittedLines(const QString &text, const QFont &font, int width, int maximumLines)
{
    // Longer texts cannot fit any window, and would take their time.
    constexpr int kMost = 1'000;
    const QFontMetrics metrics(font);
    const int room = std::max(width, metrics.maxWidth());
    QString shown = text.simplified();
    if (shown.size() > kMost) {
        shown = shown.first(kMost / 2) + shown.last(kMost / 2);
    }
    QStringList lines = wrapped(shown, font, room);
    // Words seldom end where lines do: what was shortened by widths alone may still be too long.
    for (int allowed = room * maximumLines; lines.size() > maximumLines && allowed > 0;
         allowed -= metrics.averageCharWidth()) {
        lines = wrapped(metrics.elidedText(shown, Qt::ElideMiddle, allowed), font, room);
    }
    return lines.isEmpty() ? QStringList{QString()} : lines;
}

} // namespace tollivar::DuiLib
