#include "ui/layout/window_layout.h"

#include "platform/ini_file.h"

#include <QFont>
#include <QFontInfo>
#include <QRect>
#include <QWidget>

#include <array>
#include <cstdlib>
#include <optional>
#include <vector>

namespace tollivar::ui {

namespace {

using namespace Qt::StringLiterals;

LayoutMode layoutMode = LayoutMode::Ignore;

/// No window or control is placed further away, whatever the file says.
constexpr int kLargestCoordinate = 16'384;

QString rectangleText(const QRect &rectangle)
{
    return u"%1 %2 %3 %4"_s.arg(rectangle.left())
        .arg(rectangle.top())
        .arg(rectangle.left() + rectangle.width())
        .arg(rectangle.top() + rectangle.height());
}

std::optional<QRect> readRectangle(const QString &text)
{
    const auto pieces = text.split(u' ', Qt::SkipEmptyParts);
    std::array<int, 4> values{};
    if (pieces.size() != static_cast<qsizetype>(values.size())) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
        bool isNumber = false;
        values[i] = pieces[static_cast<qsizetype>(i)].toInt(&isNumber);
        if (!isNumber || values[i] < -kLargestCoordinate || values[i] > kLargestCoordinate) {
            return std::nullopt;
        }
    }
    const QRect rectangle(QPoint(values[0], values[1]),
                          QSize(values[2] - values[0], values[3] - values[1]));
    return rectangle.isEmpty() ? std::nullopt : std::optional(rectangle);
}

/// Height, width, escapement, orientation, weight, then flags and precisions, as fonts of other
/// systems are described; what has no meaning here is written as 0.
QString fontText(const QFont &font)
{
    const auto flag = [](bool isSet) { return isSet ? u"1"_s : u"0"_s; };
    return u"-%1,0,0,0,%2,%3,%4,%5,1,0,0,0,0"_s.arg(QFontInfo(font).pixelSize())
        .arg(static_cast<int>(font.weight()))
        .arg(flag(font.italic()), flag(font.underline()), flag(font.strikeOut()));
}

std::optional<QFont> readFont(const QString &text, const QString &face)
{
    constexpr int kFields = 13;
    constexpr int kLargestFont = 200;
    constexpr int kLargestWeight = 1'000;
    const auto pieces = text.split(u',');
    if (pieces.size() != kFields || face.isEmpty()) {
        return std::nullopt;
    }
    // Negative where it is the height of the letters rather than of the line.
    const int height = pieces[0].toInt();
    const int weight = pieces[4].toInt();
    if (height == 0 || height < -kLargestFont || height > kLargestFont || weight < 1 ||
        weight > kLargestWeight) {
        return std::nullopt;
    }
    QFont font(face);
    font.setPixelSize(std::abs(height));
    font.setWeight(static_cast<QFont::Weight>(weight));
    font.setItalic(pieces[5] == u"1"_s);
    font.setUnderline(pieces[6] == u"1"_s);
    font.setStrikeOut(pieces[7] == u"1"_s);
    return font;
}

/// The controls with a name, in the order of the skin; a control's number is its place there.
template<typename Window>
auto namedControls(Window &window)
{
    auto controls = window.template findChildren<QWidget *>();
    controls.removeIf([](const QWidget *control) {
        return control->objectName().isEmpty() || control->objectName().startsWith(u"qt_"_s);
    });
    return controls;
}

using Values = std::vector<platform::IniFile::Value>;

void addOne(Values &values, const QString &section, const QString &key, const QRect &rectangle,
            const QFont &font)
{
    values.push_back({section, key, rectangleText(rectangle)});
    values.push_back({section + u"_FONT"_s, key, fontText(font)});
    values.push_back({section + u"_FONT"_s, key + u"_FaceName"_s, font.family()});
}

void restoreFont(const platform::IniFile &file, const QString &section, const QString &key,
                 QWidget &widget)
{
    const QString fonts = section + u"_FONT"_s;
    if (const auto font = readFont(file.read(fonts, key), file.read(fonts, key + u"_FaceName"_s))) {
        widget.setFont(*font);
    }
}

} // namespace

LayoutMode layoutModeOf(int number)
{
    return number == static_cast<int>(LayoutMode::Restore) ? LayoutMode::Restore
                                                           : LayoutMode::Ignore;
}

void setLayoutMode(LayoutMode mode)
{
    layoutMode = mode;
}

QString layoutPath()
{
    return u"layout.ini"_s;
}

void saveLayout(const QWidget &window, const QString &section, const QString &path)
{
    Values values;
    addOne(values, section, section, QRect(QPoint(0, 0), window.size()), window.font());
    const auto controls = namedControls(window);
    for (qsizetype number = 0; number < controls.size(); ++number) {
        const QWidget &control = *controls[number];
        const QRect place(control.mapTo(&window, QPoint(0, 0)), control.size());
        addOne(values, section, QString::number(number), place, control.font());
    }
    const auto written = platform::IniFile(path).write(values);
    // Who designs nothing misses nothing: an installed program's folder is not the person's.
    if (!written && layoutMode == LayoutMode::Restore) {
        qWarning("layout.ini: %s", qPrintable(written.error().text));
    }
}

void restoreLayout(QWidget &window, const QString &section, const QString &path)
{
    if (layoutMode != LayoutMode::Restore) {
        return;
    }
    const platform::IniFile file(path);
    if (const auto rectangle = readRectangle(file.read(section, section))) {
        window.resize(rectangle->size());
    }
    restoreFont(file, section, section, window);
    const auto controls = namedControls(window);
    for (qsizetype number = 0; number < controls.size(); ++number) {
        const QString key = QString::number(number);
        // The skin's layout places the controls; what a designer chose is how large they are.
        if (const auto place = readRectangle(file.read(section, key))) {
            controls[number]->setMinimumSize(place->size());
        }
        restoreFont(file, section, key, *controls[number]);
    }
}

} // namespace tollivar::ui
