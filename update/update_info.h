#pragma once

#include <QDateTime>
#include <QString>

namespace tollivar::update {

/// The largest answer of the update server that is read, in bytes.
inline constexpr qint64 kMaximumInfoBytes = 256LL * 1024;

/// What an update information file says; docs/formats/update-info.md describes it. Texts are from
/// outside, and shown as text alone.
struct UpdateInfo {
    QString version;     ///< the newest one, digits and dots; "0.0.0.0" when missing
    QString releaseDate; ///< as written
    QString changes;     ///< with real line breaks
    QString page; ///< where to download it; the program's own page unless it is a web address

    bool operator==(const UpdateInfo &) const = default;
};

/// Any file content is accepted; what is missing has its default.
[[nodiscard]] UpdateInfo readUpdateInfo(const QString &path);

/// When the last check that was answered took place, in local time.
[[nodiscard]] QDateTime lastCheckTime(const QString &path);
/// Writes it, and leaves everything else as it is.
void storeCheckTime(const QString &path, const QDateTime &time);

/// The question whether a new version is wanted: `form` with the version in place of "%1" and the
/// changes in place of "%2". Of those only so much is shown as every screen has room for; a line
/// with an ellipsis stands for the rest.
[[nodiscard]] QString updateQuestion(const UpdateInfo &info, const QString &form);

} // namespace tollivar::update
