#include "app/language/languages.h"

#include "platform/ini_file.h"

#include <QDir>
#include <QFileInfo>

namespace tollivar::language {

using namespace Qt::StringLiterals;
using platform::IniFile;

namespace {

/// No translation comes near these; more is not one.
constexpr qint64 kMaximumFileBytes = 1024LL * 1024;
constexpr int kMaximumFiles = 500;
constexpr qsizetype kMaximumName = 64;
/// What a menu entry shows of its text.
constexpr qsizetype kMaximumEntry = 1'024;

/// The name that a file gives itself; empty when it is no language file.
QString nameOf(const QFileInfo &file)
{
    if (file.size() > kMaximumFileBytes) {
        return {};
    }
    QString name = IniFile(file.filePath()).read(u"INFO", u"Language");
    name.removeIf([](QChar character) { return !character.isPrint(); });
    return name.left(kMaximumName);
}

} // namespace

Languages::Languages(const settings::SettingsStore &settings, QString folder)
    : m_settings(settings)
    , m_folder(std::move(folder))
{
}

void Languages::load()
{
    m_names.clear();
    m_paths.clear();
    m_current.clear();
    forgetTexts();
    const auto files = QDir(m_folder).entryInfoList({u"*.ini"_s}, QDir::Files, QDir::Name);
    for (const QFileInfo &file : files.first(std::min<qsizetype>(files.size(), kMaximumFiles))) {
        const QString name = nameOf(file);
        if (name.isEmpty()) {
            continue;
        }
        m_paths.insert(name, file.filePath());
        m_names.append(name);
        if (name == m_settings.GetLanguage()) {
            apply(name);
        }
    }
}

void Languages::apply(const QString &name)
{
    if (!m_paths.contains(name)) {
        return;
    }
    m_settings.SetLanguage(name);
    m_current = name;
    forgetTexts();
    readStrings();
    for (const MenuTable *menu : {&helpMenu(), &listMenu(), &trayMenu()}) {
        readMenu(*menu);
    }
}

void Languages::forgetTexts()
{
    m_strings.reset();
    m_menuTexts.clear();
    m_dialogs.clear();
}

void Languages::readStrings()
{
    const auto values = IniFile(m_paths.value(m_current)).readSection(u"STRING");
    for (const auto &text : builtInTexts()) {
        const QString id = text.id.toString();
        m_strings.set(id, unescaped(values.value(id.toLower())));
    }
}

void Languages::readMenu(const MenuTable &menu)
{
    const auto values = IniFile(m_paths.value(m_current)).readSection(QString(menu.section));
    int position = 0;
    for (const MenuEntry &entry : menu.entries) {
        const QString key = menuKey(entry, position++);
        const QString text = values.value(key.toLower());
        const QString place = menu.section + key;
        if (!text.isEmpty() && !m_menuTexts.contains(place)) {
            m_menuTexts.insert(place, text);
        }
    }
}

QString Languages::menuText(const QString &section, const QString &key) const
{
    return m_menuTexts.value(section + key);
}

QString Languages::dialogText(const QString &section, const QString &control) const
{
    if (m_current.isEmpty()) {
        return {};
    }
    if (!m_dialogs.contains(section)) {
        m_dialogs.insert(section, IniFile(m_paths.value(m_current)).readSection(section));
    }
    return unescaped(m_dialogs[section].value(control.toLower()));
}

platform::Result<void> Languages::writeTemplate(const MenuTable &menu) const
{
    if (m_current.isEmpty()) {
        return platform::failure(platform::ErrorKind::AskUser,
                                 u"no language file is in use to write into"_s);
    }
    const IniFile file(m_paths.value(m_current));
    int position = 0;
    for (const MenuEntry &entry : menu.entries) {
        const QString key = menuKey(entry, position++);
        if (entry.kind == MenuEntry::Kind::Separator) {
            continue;
        }
        const QString translated = menuText(menu.section, key);
        const QString present = translated.isEmpty() ? entry.english.toString() : translated;
        if (auto written = file.write(QString(menu.section), key, present.left(kMaximumEntry));
            !written) {
            return written;
        }
    }
    return {};
}

} // namespace tollivar::language
