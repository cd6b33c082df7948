#include "platform/text_encoding.h"

#include <QStringDecoder>

namespace tollivar::platform {

QByteArray encodeSystem(const QString &text)
{
    return text.toUtf8();
}

QString decodeUtf8OrLatin1(QByteArrayView bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

QString decodeNamed(QByteArrayView bytes, QByteArrayView charset)
{
    QStringDecoder named(QByteArray(charset.data(), charset.size()).constData(),
                         QStringDecoder::Flag::Stateless);
    return named.isValid() ? QString(named.decode(bytes)) : QString::fromLatin1(bytes);
}

} // namespace tollivar::platform
