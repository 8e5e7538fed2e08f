#pragma once

#include <QComboBox>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWidget>

#include "views/my_cell.h"

namespace tolvane {

class AppController;

// The playlist table: one column of MyCell rows; a double click (or Return)
// plays the row through the controller.
// Thread-safety: main thread only.
class MyTableView : public QListView {
    Q_OBJECT
public:
    explicit MyTableView(QWidget *parent = nullptr);

Q_SIGNALS:
    void rowActivated(int row);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    MyCell cell;
};

// The playlist window: the chooser of the opened lists, the table, the
// "ITEMS" count and the button that resets the played state.
// Thread-safety: main thread only.
class PlaylistWindow : public QWidget {
    Q_OBJECT
public:
    explicit PlaylistWindow(AppController &controller, QWidget *parent = nullptr);

    MyTableView &tableView() { return table; }

protected:
    void closeEvent(QCloseEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void showPlaylist();

    AppController &controller;
    QVBoxLayout layout{this};
    QComboBox listChooser;
    MyTableView table;
    PlaylistModel model;
    QLabel countLabel;
    QPushButton resetButton;
};

}  // namespace tolvane
