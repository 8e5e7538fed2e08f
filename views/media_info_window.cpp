#include "views/media_info_window.h"

#include <QCloseEvent>
#include <QSignalBlocker>

#include "app/app_controller.h"
#include "base/localized_strings.h"
#include "subtitles/text_encodings.h"

namespace tolvane {

namespace {

QLabel *sectionTitle(const char *key) {
    auto *label = new QLabel(localizedString(key));  // owned by the layout's widget
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

void fillTextEncodingPopUp(QComboBox &popUp) {
    for (const TextEncodingItem &item : textEncodingItems()) {
        switch (item.kind) {
            case TextEncodingItem::Kind::Separator:
                popUp.insertSeparator(popUp.count());
                break;
            case TextEncodingItem::Kind::Automatic:
                popUp.addItem(localizedString("ENCODING_AUTOMATIC"));
                break;
            case TextEncodingItem::Kind::Encoding:
                popUp.addItem(QString::fromUtf8(item.title));
                break;
        }
    }
}

}  // namespace

InspectorWindow::InspectorWindow(AppController &controllerToUse, QWidget *parent)
    : QWidget(parent, Qt::Window), controller(controllerToUse) {
    setWindowTitle(localizedString("INSPECTOR_TITLE"));
    fileNameLabel.setWordWrap(true);
    fileNameLabel.setTextInteractionFlags(Qt::TextSelectableByMouse);
    QFont nameFont = fileNameLabel.font();
    nameFont.setBold(true);
    fileNameLabel.setFont(nameFont);
    layout.addWidget(&fileNameLabel);

    auto *modeRow = new QHBoxLayout;  // owned by the window's layout
    modeRow->addWidget(&decodingLabel);
    modeRow->addWidget(&accelerationLabel);
    modeRow->addStretch();
    layout.addLayout(modeRow);

    auto *details = new QFormLayout;  // owned by the window's layout
    details->addRow(localizedString("INSPECTOR_FRAME_RATE"), &frameRateLabel);
    details->addRow(localizedString("INSPECTOR_BIT_RATE"), &bitRateLabel);
    details->addRow(localizedString("INSPECTOR_PICTURE_SIZE"), &pictureSizeLabel);
    details->addRow(localizedString("INSPECTOR_VIDEO_FORMAT"), &videoFormatLabel);
    layout.addLayout(details);

    layout.addWidget(sectionTitle("INSPECTOR_SOUND"));
    layout.addWidget(&soundTrackPopUp);
    layout.addWidget(sectionTitle("INSPECTOR_CAPTIONS"));
    captionTracksLayout.setContentsMargins(0, 0, 0, 0);
    layout.addWidget(&captionTracksBox);
    layout.addWidget(sectionTitle("INSPECTOR_TEXT_ENCODING"));
    fillTextEncodingPopUp(textEncodingPopUp);
    layout.addWidget(&textEncodingPopUp);
    layout.addStretch();

    connect(
        &soundTrackPopUp, &QComboBox::activated, this,
        [this](int index) { controller.changeAudioTrack(index); }, Qt::QueuedConnection);
    connect(
        &textEncodingPopUp, &QComboBox::activated, this,
        [this](int index) { controller.changeTextEncoding(index); }, Qt::QueuedConnection);
    connect(&controller, &AppController::inspectorChanged, this,
            &InspectorWindow::showInspectorState);
    resize(300, 420);
    showInspectorState();
}

QString InspectorWindow::delayText(const char *trackKey, qint32 delayMsec) {
    if (delayMsec == 0 || delayMsec == subtitles::kUnsetSubtitleDelay) {
        return QString();
    }
    return localizedString("INSPECTOR_DELAY")
        .arg(localizedString(trackKey))
        .arg(QStringLiteral("%1%2").arg(delayMsec > 0 ? QStringLiteral("+") : QString(),
                                        QString::number(delayMsec / 1000.0, 'f', 1)));
}

void InspectorWindow::showInspectorState() {
    const InspectorState &state = controller.inspectorState();
    fileNameLabel.setText(state.fileName);
    decodingLabel.setText(state.decodingLabel);
    accelerationLabel.setText(state.accelerationLabel);
    frameRateLabel.setText(state.frameRate);
    bitRateLabel.setText(state.bitRate);
    pictureSizeLabel.setText(state.pictureSize);
    videoFormatLabel.setText(state.videoFormat);

    const QSignalBlocker soundBlocker(soundTrackPopUp);
    soundTrackPopUp.clear();
    soundTrackPopUp.addItems(state.soundTracks);
    soundTrackPopUp.setCurrentIndex(state.selectedSoundTrack);
    soundTrackPopUp.setEnabled(state.soundTracks.size() > 1);

    showCaptionTracks(state);

    const QSignalBlocker encodingBlocker(textEncodingPopUp);
    textEncodingPopUp.setCurrentIndex(state.textEncodingItem);
}

void InspectorWindow::showCaptionTracks(const InspectorState &state) {
    captionTrackChecks.clear();
    for (qsizetype row = 0; row < state.captionTracks.size(); ++row) {
        auto check = std::make_unique<QCheckBox>(state.captionTracks[row]);
        const qsizetype order = state.selectedCaptionTracks.indexOf(qint64(row));
        if (order >= 0) {
            check->setChecked(true);
            const QString delay = order == 0 ? delayText("INSPECTOR_FIRST", state.fstDelayMsec)
                                             : delayText("INSPECTOR_SECOND", state.sndDelayMsec);
            if (!delay.isEmpty()) {
                check->setText(QStringLiteral("%1  (%2)").arg(state.captionTracks[row], delay));
            }
        }
        // Queued: the controller's answer rebuilds these boxes, the sender too.
        connect(
            check.get(), &QCheckBox::clicked, this,
            [this, row] { controller.toggleCaptionTrack(qint64(row)); }, Qt::QueuedConnection);
        captionTracksLayout.addWidget(check.get());
        captionTrackChecks.push_back(std::move(check));
    }
    if (state.captionTracks.isEmpty()) {
        auto none = std::make_unique<QCheckBox>(localizedString("INSPECTOR_NO_CAPTIONS"));
        none->setEnabled(false);
        captionTracksLayout.addWidget(none.get());
        captionTrackChecks.push_back(std::move(none));
    }
}

void InspectorWindow::closeEvent(QCloseEvent *event) {
    QWidget::closeEvent(event);
    controller.willCloseInspector();
}

void InspectorWindow::moveEvent(QMoveEvent *event) {
    QWidget::moveEvent(event);
    if (isVisible()) {
        controller.windowDidMoveOrResize(WindowKind::inspector, geometry());
    }
}

void InspectorWindow::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    if (isVisible()) {
        controller.windowDidMoveOrResize(WindowKind::inspector, geometry());
    }
}

}  // namespace tolvane
