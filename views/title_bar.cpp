#include "views/title_bar.h"

#include <QEvent>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

#include "base/localized_strings.h"

namespace tolvane {

namespace {

constexpr int kButtonSide = 14;
constexpr int kButtonGap = 8;
constexpr int kButtonsLeft = 10;

}  // namespace

TitleBar::TitleBar(QWidget *parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    closeButton = makeButton("close", "WINDOW_CLOSE");
    minimiseButton = makeButton("min", "WINDOW_MINIMISE");
    zoomButton = makeButton("zoom", "WINDOW_ZOOM");
    connect(closeButton, &QToolButton::clicked, this, &TitleBar::closeClicked);
    connect(minimiseButton, &QToolButton::clicked, this, &TitleBar::minimiseClicked);
    connect(zoomButton, &QToolButton::clicked, this, &TitleBar::zoomClicked);
    titleLabel.setAlignment(Qt::AlignCenter);
    titleLabel.setStyleSheet(QStringLiteral("color: #e6e6e6; font-size: 12px;"));
    titleLabel.setAttribute(Qt::WA_TransparentForMouseEvents);
    setFixedHeight(kHeight);
}

QToolButton *TitleBar::makeButton(const char *name, const char *toolTipKey) {
    auto *button = new QToolButton(this);  // owned by the title bar as its child
    button->setObjectName(QLatin1String(name));
    button->setIcon(QIcon(QStringLiteral(":/icons/controls/%1.svg").arg(QLatin1String(name))));
    button->setIconSize(QSize(kButtonSide, kButtonSide));
    button->setToolTip(localizedString(toolTipKey));
    button->setFocusPolicy(Qt::NoFocus);
    button->setStyleSheet(QStringLiteral("QToolButton { border: none; background: transparent; }"));
    button->installEventFilter(this);
    return button;
}

void TitleBar::setTitle(const QString &title) {
    titleLabel.setText(title);
    setToolTip(title);
}

// As on the original's traffic lights, all three show their symbol while the
// mouse is over any of them.
void TitleBar::showPushedImages(bool isPushed) {
    for (QToolButton *button : {closeButton, minimiseButton, zoomButton}) {
        const QString name =
            button->objectName() + (isPushed ? QStringLiteral("_pushed") : QString());
        button->setIcon(QIcon(QStringLiteral(":/icons/controls/%1.svg").arg(name)));
    }
}

bool TitleBar::eventFilter(QObject *, QEvent *event) {
    if (event->type() == QEvent::Enter) {
        showPushedImages(true);
    } else if (event->type() == QEvent::Leave) {
        showPushedImages(false);
    }
    return false;
}

void TitleBar::resizeEvent(QResizeEvent *) {
    int x = kButtonsLeft;
    const int y = (kHeight - kButtonSide) / 2;
    for (QToolButton *button : {closeButton, minimiseButton, zoomButton}) {
        button->setGeometry(x, y, kButtonSide, kButtonSide);
        x += kButtonSide + kButtonGap;
    }
    // Centred on the whole bar, clear of the buttons on both sides.
    const int side = x + kButtonGap;
    titleLabel.setGeometry(side, 0, std::max(0, width() - 2 * side), kHeight);
}

void TitleBar::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    QLinearGradient gradient(0, 0, 0, height());
    gradient.setColorAt(0.0, QColor(64, 64, 64, 215));
    gradient.setColorAt(1.0, QColor(36, 36, 36, 215));
    painter.fillRect(rect(), gradient);
    painter.fillRect(QRect(0, height() - 1, width(), 1), QColor(0, 0, 0, 120));
}

void TitleBar::mousePressEvent(QMouseEvent *event) { event->ignore(); }

}  // namespace tolvane
