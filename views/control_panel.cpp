#include "views/control_panel.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

#include "app/app_controller.h"
#include "base/localized_strings.h"

namespace tolvane {

namespace {

// The sliders count in tenths: the volume steps by 0.1 from 0 to 5, the time
// slider by a tenth of a second.
constexpr int kSliderUnitsPerValue = 10;
constexpr double kStripAlpha = 0.9;
constexpr double kRowSeparatorAlpha = 0.9;
constexpr double kTopEdgeAlpha = 0.2;

QIcon controlIcon(const char *name) {
    return QIcon(QStringLiteral(":/icons/controls/%1.svg").arg(QLatin1String(name)));
}

const QString kPanelStyle = QStringLiteral(
    "QLabel { color: #e8e8e8; font-size: 10px; }"
    "QToolButton { border: none; background: transparent; border-radius: 4px; }"
    "QToolButton:hover { background: rgba(255,255,255,30); }"
    "QToolButton:pressed { background: rgba(255,255,255,60); }"
    "QToolButton:disabled { background: transparent; }"
    "QSlider::groove:horizontal { height: 3px; background: rgba(255,255,255,60);"
    " border-radius: 1px; }"
    "QSlider::sub-page:horizontal { background: rgba(255,255,255,200); border-radius: 1px; }"
    "QSlider::handle:horizontal { width: 9px; margin: -3px 0; border-radius: 4px;"
    " background: #f2f2f2; }"
    "QSlider::handle:horizontal:disabled { background: transparent; }");

}  // namespace

ControlPanel::ControlPanel(AppController &controllerToUse, QWidget *parent)
    : QWidget(parent), controller(controllerToUse) {
    setAttribute(Qt::WA_TranslucentBackground);
    setStyleSheet(kPanelStyle);
    currentTimeLabel.setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    durationLabel.setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    timeSlider.setFocusPolicy(Qt::NoFocus);
    volumeSlider.setFocusPolicy(Qt::NoFocus);
    volumeSlider.setRange(0, 5 * kSliderUnitsPerValue);
    volumeSlider.setToolTip(localizedString("CONTROL_VOLUME"));

    inspectorButton = makeButton("info", "CONTROL_INSPECTOR");
    playlistButton = makeButton("playlist", "CONTROL_PLAYLIST");
    earlyCaptionButton = makeButton("minus", "CONTROL_EARLIER_CAPTION");
    laterCaptionButton = makeButton("plus", "CONTROL_LATER_CAPTION");
    prevFileButton = makeButton("prev", "CONTROL_PREVIOUS_FILE");
    playPauseButton = makeButton("play", "CONTROL_PLAY_PAUSE");
    nextFileButton = makeButton("next", "CONTROL_NEXT_FILE");
    muteButton = makeButton("speaker", "CONTROL_MUTE");
    fullWindowButton = makeButton("full", "CONTROL_FULL_WINDOW");
    playPauseButton->setIconSize(QSize(20, 20));

    AppController *target = &controller;
    connect(inspectorButton, &QToolButton::clicked, target, &AppController::clickInspectorButton);
    connect(playlistButton, &QToolButton::clicked, target, &AppController::clickPlaylistButton);
    connect(earlyCaptionButton, &QToolButton::clicked, target,
            &AppController::clickEarlyCaptionButton);
    connect(laterCaptionButton, &QToolButton::clicked, target,
            &AppController::clickLaterCaptionButton);
    connect(prevFileButton, &QToolButton::clicked, target, &AppController::clickPrevFileButton);
    connect(playPauseButton, &QToolButton::clicked, target, &AppController::clickPlayPauseButton);
    connect(nextFileButton, &QToolButton::clicked, target, &AppController::clickNextFileButton);
    connect(muteButton, &QToolButton::clicked, target, &AppController::clickMuteButton);
    connect(fullWindowButton, &QToolButton::clicked, target, &AppController::clickFullScreen);
    // Only the user's moves reach the controller, never the panel's own updates.
    connect(&timeSlider, &QSlider::sliderMoved, this, [this](int value) {
        controller.clickTimeSlider(double(value) / kSliderUnitsPerValue);
    });
    connect(&timeSlider, &QSlider::actionTriggered, this, [this](int action) {
        if (action != QAbstractSlider::SliderMove) {
            controller.clickTimeSlider(double(timeSlider.sliderPosition()) / kSliderUnitsPerValue);
        }
    });
    connect(&volumeSlider, &QSlider::sliderMoved, this, [this](int value) {
        controller.clickVolumeSlider(double(value) / kSliderUnitsPerValue);
    });
    connect(&volumeSlider, &QSlider::actionTriggered, this, [this](int action) {
        if (action != QAbstractSlider::SliderMove) {
            controller.clickVolumeSlider(double(volumeSlider.sliderPosition()) /
                                         kSliderUnitsPerValue);
        }
    });

    connect(target, &AppController::transportChanged, this, &ControlPanel::showTransportState);
    connect(target, &AppController::menuStateChanged, this, &ControlPanel::showMenuState);
    resize(kControlPanelSize);
    showTransportState();
    showMenuState();
}

QToolButton *ControlPanel::makeButton(const char *iconName, const char *toolTipKey) {
    auto *button = new QToolButton(this);  // owned by the panel as its child
    button->setIcon(controlIcon(iconName));
    button->setIconSize(QSize(18, 18));
    button->setToolTip(localizedString(toolTipKey));
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoRaise(true);
    return button;
}

void ControlPanel::showTransportState() {
    const TransportState state = controller.transportState();
    currentTimeLabel.setText(state.currentTimeText);
    durationLabel.setText(state.durationText);
    if (!timeSlider.isSliderDown()) {
        timeSlider.setRange(
            0, int(std::lround(std::max(0.0, state.durationSec) * kSliderUnitsPerValue)));
        timeSlider.setValue(int(std::lround(state.positionSec * kSliderUnitsPerValue)));
    }
    if (!volumeSlider.isSliderDown()) {
        volumeSlider.setValue(int(std::lround(state.volume * kSliderUnitsPerValue)));
    }
    playPauseButton->setIcon(controlIcon(state.isPlaying ? "pause" : "play"));
    playPauseButton->setEnabled(state.isPlayEnabled);
    timeSlider.setEnabled(state.isPlayEnabled);
    earlyCaptionButton->setEnabled(state.isCaptionEnabled);
    laterCaptionButton->setEnabled(state.isCaptionEnabled);
    prevFileButton->setEnabled(state.isPrevFileEnabled);
    nextFileButton->setEnabled(state.isNextFileEnabled);
    muteButton->setDown(state.volume == 0.0);
}

void ControlPanel::showMenuState() {
    fullWindowButton->setIcon(
        controlIcon(controller.menuState().isFullScreen ? "fullalt" : "full"));
}

void ControlPanel::placeInView(QSize viewSize) { setGeometry(controlPanelFrame(viewSize)); }

void ControlPanel::resizeEvent(QResizeEvent *) {
    const ControlPanelLayout layout = controlPanelLayout(width());
    currentTimeLabel.setGeometry(layout.currentTimeLabel);
    timeSlider.setGeometry(layout.timeSlider);
    durationLabel.setGeometry(layout.durationLabel);
    inspectorButton->setGeometry(layout.inspectorButton);
    playlistButton->setGeometry(layout.playlistButton);
    earlyCaptionButton->setGeometry(layout.earlyCaptionButton);
    laterCaptionButton->setGeometry(layout.laterCaptionButton);
    prevFileButton->setGeometry(layout.prevFileButton);
    playPauseButton->setGeometry(layout.playPauseButton);
    nextFileButton->setGeometry(layout.nextFileButton);
    muteButton->setGeometry(layout.muteButton);
    volumeSlider.setGeometry(layout.volumeSlider);
    fullWindowButton->setGeometry(layout.fullWindowButton);
}

void ControlPanel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(rect()), kControlPanelRadius, kControlPanelRadius);
    painter.setClipPath(outline);

    const ControlPanelLayout layout = controlPanelLayout(width());
    const QRectF timeStrip(0, 0, width(), kControlPanelTimeRowHeight);
    const QRectF buttonStrip(0, height() - kControlPanelButtonRowHeight, width(),
                             kControlPanelButtonRowHeight);
    const auto strip = [&](const QRectF &area, double top, double bottom) {
        QLinearGradient gradient(area.topLeft(), area.bottomLeft());
        gradient.setColorAt(0.0, QColor::fromRgbF(top, top, top, kStripAlpha));
        gradient.setColorAt(1.0, QColor::fromRgbF(bottom, bottom, bottom, kStripAlpha));
        painter.fillRect(area, gradient);
    };
    strip(timeStrip, 0.24, 0.17);
    strip(QRectF(0, timeStrip.bottom(), width(), buttonStrip.top() - timeStrip.bottom()), 0.17,
          0.17);
    strip(buttonStrip, 0.17, 0.09);
    painter.fillRect(layout.rowSeparator, QColor::fromRgbF(0.05, 0.05, 0.05, kRowSeparatorAlpha));
    painter.fillRect(layout.topEdge, QColor::fromRgbF(1.0, 1.0, 1.0, kTopEdgeAlpha));
}

void ControlPanel::mousePressEvent(QMouseEvent *event) { event->ignore(); }

}  // namespace tolvane
