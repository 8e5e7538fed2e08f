#include "views/my_cell.h"

#include <QApplication>
#include <QPainter>
#include <cmath>

namespace tolvane {

namespace {

constexpr int kTextInset = 8;
constexpr int kPlayedColumnWidth = 48;
constexpr int kBarHeight = 2;
const QColor kCurrentRowColor(47, 111, 214);

}  // namespace

void PlaylistModel::setRows(QList<PlaylistRow> newRows) {
    beginResetModel();
    shownRows = std::move(newRows);
    endResetModel();
}

void PlaylistModel::refreshRows(QList<PlaylistRow> newRows) {
    if (newRows.size() != shownRows.size()) {
        setRows(std::move(newRows));
        return;
    }
    shownRows = std::move(newRows);
    if (!shownRows.isEmpty()) {
        Q_EMIT dataChanged(index(0), index(int(shownRows.size()) - 1));
    }
}

int PlaylistModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(shownRows.size());
}

QVariant PlaylistModel::data(const QModelIndex &index, int role) const {
    if (!index.isValid() || index.row() >= shownRows.size()) {
        return {};
    }
    const PlaylistRow &row = shownRows[index.row()];
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
            return row.displayName;
        case Qt::UserRole:
            return QVariant::fromValue(row);
        default:
            return {};
    }
}

QString MyCell::playedText(const PlaylistRow &row) {
    if (row.isDone) {
        return QStringLiteral("\u2713");
    }
    // Whole percents, truncated: 99.6 % is not yet done.
    const int percent = int(std::floor(std::clamp(row.playedFraction, 0.0, 1.0) * 100.0));
    return percent > 0 ? QStringLiteral("%1%").arg(percent) : QString();
}

void MyCell::paint(QPainter *painter, const QStyleOptionViewItem &option,
                   const QModelIndex &index) const {
    const auto row = index.data(Qt::UserRole).value<PlaylistRow>();
    painter->save();
    const QPalette &palette = option.palette;
    const bool isSelected = option.state & QStyle::State_Selected;
    if (row.isCurrent) {
        painter->fillRect(option.rect, kCurrentRowColor);
    } else if (isSelected) {
        painter->fillRect(option.rect, palette.color(QPalette::Highlight).lighter(150));
    } else if (index.row() % 2 == 1) {
        painter->fillRect(option.rect, palette.color(QPalette::AlternateBase));
    }
    QColor textColor = row.isCurrent ? QColor(Qt::white) : palette.color(QPalette::Text);
    if (row.isSkipped) {
        textColor.setAlphaF(0.4f);
    }
    painter->setPen(textColor);
    const QRect nameRect = option.rect.adjusted(kTextInset, 0, -kPlayedColumnWidth - kTextInset, 0);
    const QString name =
        option.fontMetrics.elidedText(row.displayName, Qt::ElideMiddle, nameRect.width());
    painter->drawText(nameRect, Qt::AlignLeft | Qt::AlignVCenter, name);

    const QRect playedRect(option.rect.right() - kPlayedColumnWidth - kTextInset + 1,
                           option.rect.top(), kPlayedColumnWidth, option.rect.height());
    painter->drawText(playedRect, Qt::AlignRight | Qt::AlignVCenter, playedText(row));
    if (!row.isDone && row.playedFraction > 0.0) {
        const int barWidth =
            int(std::lround(option.rect.width() * std::min(row.playedFraction, 1.0)));
        QColor barColor = row.isCurrent ? QColor(255, 255, 255, 170) : kCurrentRowColor;
        painter->fillRect(
            QRect(option.rect.left(), option.rect.bottom() - kBarHeight + 1, barWidth, kBarHeight),
            barColor);
    }
    painter->restore();
}

QSize MyCell::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const {
    return QSize(QStyledItemDelegate::sizeHint(option, index).width(), kRowHeight);
}

}  // namespace tolvane
