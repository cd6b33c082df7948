#pragma once

#include <QString>

#include <tl/expected.hpp>

namespace tollivar::platform {

/// What the caller can sensibly do about a failure.
enum class ErrorKind {
    TryAgain, ///< passes by itself: busy, interrupted, a network that may come back
    AskUser,  ///< a person can mend it: full disk, denied place, wrong address
    Hopeless, ///< neither waiting nor asking helps
};

/// Why something failed: what to do about it, an English sentence for log or message, and the
/// system's own code (0 when there is none).
struct Error {
    ErrorKind kind = ErrorKind::Hopeless;
    QString text;
    int systemCode = 0;

    /// The same error with what was being tried in front: "open dtasks.db: disk full".
    [[nodiscard]] Error during(const QString &action) const
    {
        return Error{kind, action + QStringLiteral(": ") + text, systemCode};
    }
};

/// A value, or the reason why there is none. Early return: `if (!r) return tl::unexpected(r.error());`
template<typename T>
using Result = tl::expected<T, Error>;

[[nodiscard]] inline tl::unexpected<Error> failure(ErrorKind kind, QString text, int systemCode = 0)
{
    return tl::unexpected<Error>(Error{kind, std::move(text), systemCode});
}

} // namespace tollivar::platform
