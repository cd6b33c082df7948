#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace tollivar::fetch {

/// Takes the title out of a page that arrives in pieces.
///
/// The title is what stands between the first two occurrences of the bare word "title", wherever
/// they are. The page is kept up to 1 MiB; a title that begins later is not found.
class PageTitleReader {
public:
    /// Takes the next piece; true once the title is complete, and from then on.
    bool feed(QByteArrayView piece);

    /// The title, cleaned for reading; "Unknown Title Video" when nothing is left of it. Legal once
    /// feed() has returned true.
    [[nodiscard]] QString title() const;

private:
    QByteArray m_page;
    QByteArray m_lowerPage;
    qsizetype m_first = -1;
    qsizetype m_second = -1;
};

} // namespace tollivar::fetch
