#pragma once

#include "companions/capture/media_found.h"

#include <QAbstractTableModel>

#include <vector>

namespace tollivar::sniff {

/// The media of a browsing person as a table, in the order in which they are given.
///
/// Threads: the main thread.
/// Owns:    the media; what mediumAt() lends lasts until the next setMedia().
class MediaModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Title, Type, Size, Site, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void setMedia(std::vector<capture::MediaFound> media);
    /// `row` is below rowCount().
    [[nodiscard]] const capture::MediaFound &mediumAt(int row) const
    {
        return m_media[static_cast<std::size_t>(row)];
    }
    /// -1 when it is not there.
    [[nodiscard]] int rowOf(const QString &address) const;

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    std::vector<capture::MediaFound> m_media;
};

} // namespace tollivar::sniff
