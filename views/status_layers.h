#pragma once

#include <QString>
#include <QTimer>
#include <QWidget>

namespace tolvane {

// The text layers over the picture that are not captions: the status message
// (top left), the file name (centred), the count-down (under the file name)
// and the loading circle (centred). Each is drawn as outlined text, the back
// layer under the fore layer, so it reads on any picture. A transparent child
// that lets the mouse through and follows its parent's size.
// Thread-safety: main thread only.
class StatusLayers : public QWidget {
public:
    explicit StatusLayers(QWidget *parent);

    // An empty text hides the layer.
    void setMessage(const QString &text);
    void setFileName(const QString &name, bool isVisible);
    void setCountDown(const QString &text);
    void setLoadingCircleVisible(bool isVisible);

    const QString &message() const { return messageText; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString messageText;
    QString fileNameText;
    bool isFileNameVisible = false;
    QString countDownText;
    bool isLoadingCircleVisible = false;
    int loadingCircleAngle = 0;
    QTimer loadingCircleTimer;
};

}  // namespace tolvane
