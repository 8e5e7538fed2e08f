#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QStyledItemDelegate>

#include "app/app_controller.h"

namespace tolvane {

// The playlist's rows as the table shows them; Qt::UserRole holds the row.
// Thread-safety: main thread only.
class PlaylistModel : public QAbstractListModel {
public:
    using QAbstractListModel::QAbstractListModel;
    void setRows(QList<PlaylistRow> newRows);
    // The same rows with new contents: the view keeps its scroll position
    // and selection. A different count resets like setRows().
    void refreshRows(QList<PlaylistRow> newRows);
    const QList<PlaylistRow> &rows() const { return shownRows; }
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    QList<PlaylistRow> shownRows;
};

// One playlist row: the display name, the played fraction as a thin bar with
// its percentage, the done mark; the current row highlighted, a skipped
// Blu-ray stream dimmed.
// Thread-safety: main thread only.
class MyCell : public QStyledItemDelegate {
public:
    static constexpr int kRowHeight = 28;

    using QStyledItemDelegate::QStyledItemDelegate;
    // What the right-hand column says: the done mark, the whole percent
    // played, or nothing for a file not started.
    static QString playedText(const PlaylistRow &row);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

}  // namespace tolvane

Q_DECLARE_METATYPE(tolvane::PlaylistRow)
