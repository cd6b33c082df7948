#include "companions/sniff_browser/media_model.h"

#include <QLocale>
#include <QUrl>

#include <algorithm>

namespace tollivar::sniff {

namespace {

/// The page's title; without one, the file's name.
QString titleOf(const capture::MediaFound &medium)
{
    if (!medium.title.isEmpty()) {
        return medium.title;
    }
    const QUrl address(medium.address);
    return address.fileName().isEmpty() ? address.host() : address.fileName();
}

QString typeOf(const capture::MediaFound &medium)
{
    return medium.extension.isEmpty() ? medium.mediaType : medium.extension.mid(1).toUpper();
}

QString sizeOf(const capture::MediaFound &medium)
{
    return medium.length
               ? QLocale().formattedDataSize(*medium.length, 1, QLocale::DataSizeTraditionalFormat)
               : QString();
}

QString textOf(const capture::MediaFound &medium, int column)
{
    switch (column) {
    case MediaModel::Title:
        return titleOf(medium);
    case MediaModel::Type:
        return typeOf(medium);
    case MediaModel::Size:
        return sizeOf(medium);
    case MediaModel::Site:
        return QUrl(medium.page.isEmpty() ? medium.address : medium.page).host();
    default:
        return {};
    }
}

} // namespace

void MediaModel::setMedia(std::vector<capture::MediaFound> media)
{
    beginResetModel();
    m_media = std::move(media);
    endResetModel();
}

int MediaModel::rowOf(const QString &address) const
{
    const auto found = std::find_if(m_media.begin(), m_media.end(),
                                    [&](const auto &medium) { return medium.address == address; });
    return found == m_media.end() ? -1 : static_cast<int>(found - m_media.begin());
}

int MediaModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_media.size());
}

int MediaModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant MediaModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto &medium = mediumAt(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return textOf(medium, index.column());
    case Qt::ToolTipRole:
        return medium.address;
    case Qt::TextAlignmentRole:
        return static_cast<int>(Qt::AlignVCenter) |
               static_cast<int>(index.column() == Size ? Qt::AlignRight : Qt::AlignLeft);
    default:
        return {};
    }
}

QVariant MediaModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Title:
        return tr("Title");
    case Type:
        return tr("Type");
    case Size:
        return tr("Size");
    case Site:
        return tr("Site");
    default:
        return {};
    }
}

} // namespace tollivar::sniff
