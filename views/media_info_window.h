#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <QWidget>
#include <vector>

namespace tolvane {

class AppController;
struct InspectorState;

// The inspector window: what the loaded file is ("FF"/"NT", "H.264"/"10-bit", frame
// rate, bit rate, picture size, video format), its sound tracks, its caption
// tracks with the delay of each shown one, and the caption text encoding.
// Shows the controller's InspectorState; choices go back to the controller.
// Thread-safety: main thread only.
class InspectorWindow : public QWidget {
    Q_OBJECT
public:
    explicit InspectorWindow(AppController &controller, QWidget *parent = nullptr);

    // "first +0.5 s": a shown track's delay; empty when it has none (0 or unset).
    static QString delayText(const char *trackKey, qint32 delayMsec);

protected:
    void closeEvent(QCloseEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void showInspectorState();
    void showCaptionTracks(const InspectorState &state);

    AppController &controller;
    QVBoxLayout layout{this};
    QLabel fileNameLabel;
    QLabel decodingLabel;
    QLabel accelerationLabel;
    QLabel frameRateLabel;
    QLabel bitRateLabel;
    QLabel pictureSizeLabel;
    QLabel videoFormatLabel;
    QComboBox soundTrackPopUp;
    QWidget captionTracksBox;
    QVBoxLayout captionTracksLayout{&captionTracksBox};
    std::vector<std::unique_ptr<QCheckBox>> captionTrackChecks;
    QComboBox textEncodingPopUp;
    bool isUpdating = false;
};

}  // namespace tolvane
