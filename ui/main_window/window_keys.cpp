#include "ui/main_window/window_keys.h"

#include "app/language/menu_tables.h"

#include <algorithm>
#include <array>

namespace tollivar::ui {

using namespace Qt::StringLiterals;

namespace {

// Named one by one: of the standard keys some desktops have none, and the guide lists them all.
constexpr std::array kKeys = {
    WindowKey{Qt::CTRL | Qt::Key_N, "btnAddUrl"_L1},
    WindowKey{Qt::CTRL | Qt::Key_P, "btnPlayer"_L1},
    WindowKey{QKeyCombination(Qt::Key_F5), "btnStart"_L1},
    WindowKey{QKeyCombination(Qt::Key_F6), "btnStop"_L1},
    WindowKey{QKeyCombination(Qt::Key_Delete), "btnRemove"_L1},
    WindowKey{Qt::CTRL | Qt::SHIFT | Qt::Key_Delete, "btnClearAll"_L1},
    WindowKey{QKeyCombination(Qt::Key_F10), "btnMenu"_L1},
    WindowKey{Qt::CTRL | Qt::Key_Q, "btnExit"_L1},
    WindowKey{Qt::CTRL | Qt::Key_C, {}, language::commands::kCopyWebAddress},
    WindowKey{Qt::CTRL | Qt::SHIFT | Qt::Key_C, {}, language::commands::kCopyFileAddress},
    WindowKey{Qt::CTRL | Qt::Key_Comma, {}, language::commands::kSettings},
    WindowKey{QKeyCombination(Qt::Key_F1), {}, language::commands::kHelp},
};

template<typename Wanted>
QKeySequence keysWhere(const Wanted &isWanted)
{
    const auto *found = std::find_if(kKeys.begin(), kKeys.end(), isWanted);
    return found == kKeys.end() ? QKeySequence() : QKeySequence(found->keys);
}

} // namespace

std::span<const WindowKey> windowKeys()
{
    return kKeys;
}

QKeySequence keysOf(QLatin1StringView button)
{
    return keysWhere(
        [button](const WindowKey &key) { return !button.isEmpty() && key.button == button; });
}

QKeySequence keysOf(int command)
{
    return keysWhere(
        [command](const WindowKey &key) { return command != 0 && key.command == command; });
}

QString withKeys(const QString &tip, const QKeySequence &keys)
{
    return keys.isEmpty() ? tip : tip + u" ("_s + keys.toString(QKeySequence::NativeText) + u')';
}

} // namespace tollivar::ui
