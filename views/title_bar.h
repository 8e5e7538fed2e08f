#pragma once

#include <QLabel>
#include <QToolButton>
#include <QWidget>

namespace tolvane {

// The borderless window's own title bar: close, minimise and zoom buttons on
// the left (each showing its pushed image while the mouse is over the group)
// and the file name centred. Shown and hidden with the control panel; a
// press on its background falls through to the view, which moves the window.
// Thread-safety: main thread only.
class TitleBar : public QWidget {
    Q_OBJECT
public:
    static constexpr int kHeight = 24;

    explicit TitleBar(QWidget *parent);
    void setTitle(const QString &title);

Q_SIGNALS:
    void closeClicked();
    void minimiseClicked();
    void zoomClicked();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QToolButton *makeButton(const char *name, const char *toolTipKey);
    void showPushedImages(bool isPushed);

    QToolButton *closeButton;
    QToolButton *minimiseButton;
    QToolButton *zoomButton;
    QLabel titleLabel{this};
};

}  // namespace tolvane
