#pragma once

#include "companions/capture/media_found.h"

#include <QSet>
#include <QWidget>

#include <vector>

class QLabel;
class QModelIndex;
class QPushButton;
class QStackedWidget;
class QTreeView;

namespace tollivar::sniff {

class MediaModel;

/// The small window beside the browser: what its pages play, and what to do with it.
///
/// Threads: the main thread.
class MediaPanel : public QWidget {
    Q_OBJECT

public:
    explicit MediaPanel(QWidget *parent = nullptr);

    /// Shows these media, best first. What was selected stays selected, what is in sight stays in
    /// sight unless it is the list's beginning; without a selection the first one is chosen.
    void setMedia(const std::vector<capture::MediaFound> &media);
    /// A sentence below the list.
    void setStatus(const QString &text);
    /// There is no browser: says so in place of the list.
    void showProblem(const QString &reason);

Q_SIGNALS:
    void downloadWanted(const std::vector<tollivar::capture::MediaFound> &media);
    /// The person wants everything forgotten that the browser knows of them.
    void forgetWanted();
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    [[nodiscard]] QWidget *makeList();
    [[nodiscard]] QWidget *makeButtons();
    [[nodiscard]] QStringList selectedAddresses() const;
    /// Empty for no row.
    [[nodiscard]] QString addressAt(const QModelIndex &index) const;
    void select(const QSet<QString> &addresses, const QString &current);
    void chooseSelected();
    void copySelected();
    void refreshButtons();

    MediaModel *m_model;
    QTreeView *m_view = nullptr;
    QStackedWidget *m_pages = nullptr;
    QLabel *m_hint = nullptr;
    QLabel *m_status = nullptr;
    QPushButton *m_download = nullptr;
    QPushButton *m_copy = nullptr;
};

} // namespace tollivar::sniff
