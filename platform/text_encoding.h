#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace tollivar::platform {

/// Bytes of programs and pages into text. No input is an error.
///
/// Threads: any.

/// Text as the system's libraries and programs take it.
[[nodiscard]] QByteArray encodeSystem(const QString &text);

/// UTF-8; bytes that are not valid UTF-8 are taken, as a whole, as Latin-1.
[[nodiscard]] QString decodeUtf8OrLatin1(QByteArrayView bytes);

/// By the named character set when it is known, else Latin-1; never UTF-8 guessing.
[[nodiscard]] QString decodeNamed(QByteArrayView bytes, QByteArrayView charset);

} // namespace tollivar::platform
