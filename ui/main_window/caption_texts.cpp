#include "ui/main_window/caption_texts.h"

namespace tollivar::ui {

using namespace Qt::StringLiterals;

QString filterCaption(const QString &word, int count)
{
    return word + u" ("_s + QString::number(count) + u')';
}

QString speedText(double bytesPerSecond)
{
    constexpr double kKilo = 1024.0;
    if (bytesPerSecond < kKilo * kKilo) {
        return QString::number(bytesPerSecond / kKilo, 'f', 0) + u" KB/s"_s;
    }
    return QString::number(bytesPerSecond / kKilo / kKilo, 'f', 2) + u" MB/s"_s;
}

QString totalsText(const QString &pattern, int running, int waiting, double speed)
{
    if (running == 0 && waiting == 0) {
        return {};
    }
    const QString counts = pattern.arg(running).arg(waiting);
    return running == 0 ? counts : counts + u"   "_s + speedText(speed);
}

} // namespace tollivar::ui
