#include "settings/settings_store.h"

#include "platform/file_ops.h"
#include "platform/paths.h"

namespace tollivar::settings {

SettingsStore::SettingsStore(const QString &path) : m_file(path) {}

QString SettingsStore::text(const Setting &setting) const
{
    return m_file.read(setting.section.toString(), setting.key.toString(),
                       setting.fallback.toString());
}

int SettingsStore::number(const Setting &setting) const
{
    return platform::iniNumber(text(setting));
}

bool SettingsStore::flag(const Setting &setting) const
{
    return text(setting).compare(keys::kTrue, Qt::CaseInsensitive) == 0;
}

void SettingsStore::setText(const Setting &setting, const QString &value) const
{
    const auto written = m_file.write(setting.section.toString(), setting.key.toString(), value);
    if (!written) {
        qWarning("a setting was not stored: %s", qPrintable(written.error().text));
    }
}

void SettingsStore::setNumber(const Setting &setting, int value) const
{
    setText(setting, QString::number(value));
}

void SettingsStore::setFlag(const Setting &setting, bool value) const
{
    setText(setting, (value ? keys::kTrue : keys::kFalse).toString());
}

QString SettingsStore::GetLastFolder() const
{
    if (QString folder = text(keys::kLastFolder); !folder.isEmpty()) {
        return folder;
    }
    QString folder = platform::documentsFolder() + QStringLiteral("/My Flash Videos");
    if (const auto made = platform::makeFolders(folder); !made) {
        qWarning("the default folder cannot be made: %s", qPrintable(made.error().text));
    }
    return folder;
}

} // namespace tollivar::settings
