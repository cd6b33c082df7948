#pragma once

#include <QDateTime>
#include <QString>

namespace tollivar::update {

/// The largest answer of the update server that is read, in bytes.
inline constexpr qint64 kMaximumInfoBytes = 256LL * 1024;

/// What an update information file says; docs/formats/update-info.md describes it. Texts are from
/// outside, and shown as text alone.
struct UpdateInfo {
    QString version;     ///< the newest one, "0.0.0.0" when missing
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

/// The question whether a new version is wanted. It is worded a little differently when the version
/// is news, and when it was noticed before.
enum class Notice { First, Again };
[[nodiscard]] QString updateQuestion(const UpdateInfo &info, Notice notice);

} // namespace tollivar::update
