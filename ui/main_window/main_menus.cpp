#include "ui/main_window/main_menus.h"

#include "ui/main_window/window_keys.h"

#include <QAction>
#include <QActionGroup>

namespace tollivar::ui {

using language::MenuEntry;
using namespace Qt::StringLiterals;

MainMenus::MainMenus(const WindowTexts &texts, const Command &command) : m_texts(texts)
{
    fill(m_help, language::helpMenu(), command);
    fill(m_list, language::listMenu(), command);
    fill(m_tray, language::trayMenu(), command);
    // Not in the tray's menu: it is used while the window, whose keys they are, is not.
    showKeys(m_help);
    showKeys(m_list);
}

void MainMenus::showKeys(QMenu &menu)
{
    const auto actions = menu.actions();
    for (QAction *action : actions) {
        // To be read only: a menu that belongs to no window takes no keys while it is closed.
        action->setShortcut(keysOf(action->data().toInt()));
        action->setShortcutVisibleInContextMenu(true);
    }
}

void MainMenus::enableListBy(const Availability &isAvailable)
{
    QObject::connect(&m_list, &QMenu::aboutToShow, &m_list, [this, isAvailable] {
        const auto actions = m_list.actions();
        for (QAction *action : actions) {
            if (const int command = action->data().toInt(); command != 0) {
                action->setEnabled(isAvailable(command));
            }
        }
    });
}

void MainMenus::fill(QMenu &menu, const language::MenuTable &table, const Command &command)
{
    for (const MenuEntry &entry : table.entries) {
        switch (entry.kind) {
        case MenuEntry::Kind::Separator:
            menu.addSeparator();
            break;
        case MenuEntry::Kind::Popup: {
            QMenu *popup = menu.addMenu(entry.english.toString());
            QObject::connect(popup, &QMenu::aboutToShow, popup,
                             [this, popup] { fillLanguages(*popup); });
            break;
        }
        case MenuEntry::Kind::Command: {
            QAction *action = menu.addAction(entry.english.toString());
            action->setData(entry.command);
            QObject::connect(action, &QAction::triggered, action,
                             [command, number = entry.command] { command(number); });
            break;
        }
        }
    }
    QObject::connect(&menu, &QMenu::aboutToShow, &menu,
                     [this, &menu, &table] { rename(menu, table); });
}

void MainMenus::rename(QMenu &menu, const language::MenuTable &table) const
{
    const auto actions = menu.actions();
    const auto count = static_cast<int>(table.entries.size());
    for (int position = 0; position < count; ++position) {
        const MenuEntry &entry = table.entries[static_cast<std::size_t>(position)];
        if (entry.kind == MenuEntry::Kind::Separator) {
            continue;
        }
        QString text = m_texts.menu(table.section.toString(), language::menuKey(entry, position));
        if (text.isEmpty()) {
            text = entry.kind == MenuEntry::Kind::Popup ? m_texts.text(u"strLanguage"_s)
                                                        : entry.english.toString();
        }
        actions[position]->setText(text.replace(u'&', u"&&"_s));
    }
}

void MainMenus::fillLanguages(QMenu &popup) const
{
    popup.clear();
    auto *group = new QActionGroup(&popup);
    const QStringList names = m_texts.languages();
    // Nobody has chosen yet: the built-in texts are English.
    const QString chosen =
        m_texts.currentLanguage().isEmpty() ? u"English"_s : m_texts.currentLanguage();
    for (const QString &name : names) {
        QAction *action = popup.addAction(QString(name).replace(u'&', u"&&"_s));
        action->setCheckable(true);
        action->setChecked(name == chosen);
        group->addAction(action);
        QObject::connect(action, &QAction::triggered, action,
                         [this, name] { m_texts.applyLanguage(name); });
    }
    popup.setEnabled(!names.isEmpty());
}

void MainMenus::addProfiles(const Profiles &profiles, const Convert &convert)
{
    QMenu *popup = m_list.addMenu(QString());
    QObject::connect(&m_list, &QMenu::aboutToShow, popup, [this, popup, profiles, convert] {
        const QString title = m_texts.dialog(u"DIALOG_ADDTASK"_s, u"textProfile"_s);
        popup->setTitle(title.isEmpty() ? u"Convert to"_s : title);
        popup->clear();
        const QStringList names = profiles();
        for (const QString &name : names) {
            popup->addAction(QString(name).replace(u'&', u"&&"_s),
                             [convert, name] { convert(name); });
        }
        popup->setEnabled(!names.isEmpty());
    });
}

void MainMenus::addCopyDetails(const std::function<void()> &copy,
                               const std::function<bool()> &canCopy)
{
    QAction *action = m_list.addAction(QString(), copy);
    QObject::connect(&m_list, &QMenu::aboutToShow, action, [this, action, canCopy] {
        action->setText(m_texts.text(u"strCopyDetails"_s));
        action->setEnabled(canCopy());
    });
}

} // namespace tollivar::ui
