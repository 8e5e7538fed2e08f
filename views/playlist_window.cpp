#include "views/playlist_window.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QSignalBlocker>

#include "app/app_controller.h"
#include "base/localized_strings.h"

namespace tolvane {

MyTableView::MyTableView(QWidget *parent) : QListView(parent) {
    setItemDelegate(&cell);
    setUniformItemSizes(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAlternatingRowColors(true);
    connect(this, &QListView::doubleClicked, this,
            [this](const QModelIndex &index) { Q_EMIT rowActivated(index.row()); });
}

void MyTableView::keyPressEvent(QKeyEvent *event) {
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
        currentIndex().isValid()) {
        Q_EMIT rowActivated(currentIndex().row());
        return;
    }
    QListView::keyPressEvent(event);
}

PlaylistWindow::PlaylistWindow(AppController &controllerToUse, QWidget *parent)
    : QWidget(parent, Qt::Window), controller(controllerToUse) {
    setWindowTitle(localizedString("PLAYLIST_TITLE"));
    table.setModel(&model);
    layout.addWidget(&listChooser);
    layout.addWidget(&table, 1);
    auto *bottomRow = new QHBoxLayout;  // owned by the window's layout
    bottomRow->addWidget(&countLabel, 1);
    resetButton.setText(localizedString("PLAYLIST_RESET_PLAYED"));
    bottomRow->addWidget(&resetButton);
    layout.addLayout(bottomRow);

    // Queued: the controller's answer rebuilds the rows and the chooser.
    connect(
        &table, &MyTableView::rowActivated, this,
        [this](int row) { controller.doubleClickedAtTableView(row); }, Qt::QueuedConnection);
    connect(
        &listChooser, &QComboBox::activated, this,
        [this](int index) { controller.chooseOpenedList(index); }, Qt::QueuedConnection);
    connect(&resetButton, &QPushButton::clicked, &controller,
            &AppController::clickResetPlayedStateButton);
    connect(&controller, &AppController::playlistChanged, this, &PlaylistWindow::showPlaylist);
    connect(&controller, &AppController::playlistRowsChanged, this,
            [this] { model.refreshRows(controller.playlistRows()); });
    resize(360, 420);
    showPlaylist();
}

void PlaylistWindow::showPlaylist() {
    const QList<PlaylistRow> rows = controller.playlistRows();
    model.setRows(rows);
    for (qsizetype row = 0; row < rows.size(); ++row) {
        if (rows[row].isCurrent) {
            table.scrollTo(model.index(int(row)));
        }
    }
    const QSignalBlocker blocker(listChooser);
    listChooser.clear();
    listChooser.addItems(controller.openedListTitles());
    listChooser.setCurrentIndex(controller.indexList());
    listChooser.setEnabled(listChooser.count() > 1);
    countLabel.setText(controller.playlistCountText());
    resetButton.setEnabled(!rows.isEmpty());
}

void PlaylistWindow::closeEvent(QCloseEvent *event) {
    QWidget::closeEvent(event);
    controller.willClosePlaylist();
}

void PlaylistWindow::moveEvent(QMoveEvent *event) {
    QWidget::moveEvent(event);
    if (isVisible()) {
        controller.windowDidMoveOrResize(WindowKind::list, geometry());
    }
}

void PlaylistWindow::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    if (isVisible()) {
        controller.windowDidMoveOrResize(WindowKind::list, geometry());
    }
}

}  // namespace tolvane
