#include "views/preferences_window.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QFontDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "app/app_controller.h"
#include "app/user_defaults.h"
#include "base/localized_strings.h"
#include "subtitles/text_encodings.h"

namespace tolvane {

namespace {

struct CaptionSettingRange {
    double minimum;
    double maximum;
    double step;
    int decimals;
};
constexpr CaptionSettingRange kFontSizeRange{0.01, 0.10, 0.002, 3};
constexpr CaptionSettingRange kSpacingRange{0.0, 3.0, 0.1, 1};
constexpr CaptionSettingRange kMarginRange{0.0, 0.45, 0.01, 2};

void setUpSpinBox(QDoubleSpinBox &box, const CaptionSettingRange &range) {
    box.setRange(range.minimum, range.maximum);
    box.setSingleStep(range.step);
    box.setDecimals(range.decimals);
    box.setKeyboardTracking(false);
}

QGroupBox *groupOf(const char *titleKey, QLayout *content) {
    auto *group = new QGroupBox(localizedString(titleKey));  // owned by the window's layout
    group->setLayout(content);
    return group;
}

}  // namespace

PreferencesWindow::PreferencesWindow(AppController &controllerToUse, QWidget *parent)
    : QWidget(parent, Qt::Window), controller(controllerToUse) {
    setWindowTitle(localizedString("PREFERENCES_TITLE"));

    decodingPopUp.addItem(localizedString("PREFERENCES_NATIVE_MODE"));
    decodingPopUp.addItem(localizedString("PREFERENCES_FFMPEG_MODE"));
    gpuAccCheck.setText(localizedString("PREFERENCES_HARDWARE_DECODING"));
    tenBitCheck.setText(localizedString("PREFERENCES_TEN_BIT"));
    auto *decoding = new QFormLayout;  // owned by its group
    decoding->addRow(localizedString("PREFERENCES_DECODING_MODE"), &decodingPopUp);
    decoding->addRow(&gpuAccCheck);
    decoding->addRow(&tenBitCheck);

    for (const TextEncodingItem &item : textEncodingItems()) {
        if (item.kind == TextEncodingItem::Kind::Separator) {
            textEncodingPopUp.insertSeparator(textEncodingPopUp.count());
        } else {
            textEncodingPopUp.addItem(item.kind == TextEncodingItem::Kind::Automatic
                                          ? localizedString("ENCODING_AUTOMATIC")
                                          : QString::fromUtf8(item.title));
        }
    }
    whereFolderLabel.setWordWrap(true);
    whereFolderLabel.setTextInteractionFlags(Qt::TextSelectableByMouse);
    chooseWhereButton.setText(localizedString("PREFERENCES_WHERE_CHOOSE"));
    showWhereButton.setText(localizedString("PREFERENCES_WHERE_SHOW"));
    clearWhereButton.setText(localizedString("PREFERENCES_WHERE_CLEAR"));
    auto *whereButtons = new QHBoxLayout;  // owned by the captions layout
    whereButtons->addWidget(&chooseWhereButton);
    whereButtons->addWidget(&showWhereButton);
    whereButtons->addWidget(&clearWhereButton);
    whereButtons->addStretch();

    setUpSpinBox(fontSizeBox, kFontSizeRange);
    setUpSpinBox(spacingBox, kSpacingRange);
    setUpSpinBox(marginBox, kMarginRange);
    boldCheck.setText(localizedString("PREFERENCES_BOLD"));
    showMessageCheck.setText(localizedString("PREFERENCES_SHOW_MESSAGES"));
    anotherColorCheck.setText(localizedString("PREFERENCES_ANOTHER_COLOR"));
    auto *captions = new QFormLayout;  // owned by its group
    captions->addRow(localizedString("PREFERENCES_TEXT_ENCODING"), &textEncodingPopUp);
    captions->addRow(localizedString("PREFERENCES_WHERE_FOLDER"), &whereFolderLabel);
    captions->addRow(QString(), whereButtons);
    captions->addRow(localizedString("PREFERENCES_FONT"), &fontButton);
    captions->addRow(localizedString("PREFERENCES_FONT_SIZE"), &fontSizeBox);
    captions->addRow(QString(), &boldCheck);
    captions->addRow(localizedString("PREFERENCES_SPACING"), &spacingBox);
    captions->addRow(localizedString("PREFERENCES_MARGIN"), &marginBox);
    captions->addRow(QString(), &anotherColorCheck);

    auto *screen = new QVBoxLayout;  // owned by its group
    screen->addWidget(&showMessageCheck);

    auto *layout = new QVBoxLayout(this);  // owned by the window
    layout->addWidget(groupOf("PREFERENCES_DECODING", decoding));
    layout->addWidget(groupOf("PREFERENCES_CAPTIONS", captions));
    layout->addWidget(groupOf("PREFERENCES_SCREEN", screen));
    layout->addStretch();

    connect(&decodingPopUp, &QComboBox::activated, &controller, &AppController::clickDecodingPUBT);
    connect(&gpuAccCheck, &QCheckBox::clicked, &controller, &AppController::clickIsGPUAccCheck);
    connect(&tenBitCheck, &QCheckBox::clicked, &controller, &AppController::clickIs10bitModeCheck);
    connect(&textEncodingPopUp, &QComboBox::activated, &controller,
            &AppController::changeTextEncoding);
    connect(&chooseWhereButton, &QPushButton::clicked, this, &PreferencesWindow::chooseWhereFolder);
    connect(&showWhereButton, &QPushButton::clicked, this,
            [this] { QDesktopServices::openUrl(controller.whereFolder()); });
    connect(&clearWhereButton, &QPushButton::clicked, this, [this] {
        controller.setWhereFolder(QUrl());
        showSettings();
    });
    connect(&fontButton, &QPushButton::clicked, this, &PreferencesWindow::chooseCaptionFont);
    connect(&fontSizeBox, &QDoubleSpinBox::valueChanged, this,
            [this](double value) { saveCaptionSetting("FontSize2", value); });
    connect(&boldCheck, &QCheckBox::clicked, this,
            [this](bool isOn) { saveCaptionSetting("IsFontBold2", isOn); });
    connect(&spacingBox, &QDoubleSpinBox::valueChanged, this,
            [this](double value) { saveCaptionSetting("CaptionSpacing2", value); });
    connect(&marginBox, &QDoubleSpinBox::valueChanged, this,
            [this](double value) { saveCaptionSetting("CaptionMargin2", value); });
    connect(&showMessageCheck, &QCheckBox::clicked, this, [this](bool isOn) {
        controller.userDefaults().setValue(QStringLiteral("IsShowMessage"), isOn);
    });
    connect(&anotherColorCheck, &QCheckBox::clicked, &controller,
            &AppController::clickAnotherDefaultColorMenu);
    connect(&controller, &AppController::inspectorChanged, this, &PreferencesWindow::showSettings);
    connect(&controller, &AppController::menuStateChanged, this, &PreferencesWindow::showSettings);
    showSettings();
}

QString PreferencesWindow::fontNameForFont(const QFont &font) {
    const QString family = font.family();
    const QString style = font.styleName();
    const bool isPlainStyle = style.isEmpty() || style == QLatin1String("Regular") ||
                              style == QLatin1String("Bold") || style == QLatin1String("Italic") ||
                              style == QLatin1String("Bold Italic");
    return isPlainStyle ? family : QStringLiteral("%1:style=%2").arg(family, style);
}

QFont PreferencesWindow::fontForFontName(const QString &fontName) {
    QFont font;
    const qsizetype colon = fontName.indexOf(QLatin1Char(':'));
    font.setFamilies({fontName.left(colon)});
    static const QLatin1String kStylePrefix(":style=");
    if (colon >= 0 && fontName.mid(colon).startsWith(kStylePrefix)) {
        font.setStyleName(fontName.mid(colon + kStylePrefix.size()));
    }
    return font;
}

void PreferencesWindow::showEvent(QShowEvent *event) {
    showSettings();
    QWidget::showEvent(event);
}

void PreferencesWindow::showSettings() {
    const QSignalBlocker blockers[] = {
        QSignalBlocker(decodingPopUp),    QSignalBlocker(gpuAccCheck),
        QSignalBlocker(tenBitCheck),      QSignalBlocker(textEncodingPopUp),
        QSignalBlocker(fontSizeBox),      QSignalBlocker(boldCheck),
        QSignalBlocker(spacingBox),       QSignalBlocker(marginBox),
        QSignalBlocker(showMessageCheck), QSignalBlocker(anotherColorCheck)};
    decodingPopUp.setCurrentIndex(controller.currentDecodingMode() == 0 ? 0 : 1);
    gpuAccCheck.setChecked(
        controller.userDefaults().value(QStringLiteral("IsGPUAccForFF")).toInt() != 0);
    gpuAccCheck.setEnabled(controller.inspectorState().isGPUAccCheckEnabled);
    tenBitCheck.setChecked(
        controller.userDefaults().value(QStringLiteral("Is10bitModeForFF")).toInt() != 0);
    tenBitCheck.setEnabled(controller.currentDecodingMode() != 0);
    textEncodingPopUp.setCurrentIndex(
        controller.userDefaults().value(QStringLiteral("TextEncodingPopUpItem2")).toInt());

    const QUrl where = controller.whereFolder();
    whereFolderLabel.setText(where.isEmpty() ? localizedString("PREFERENCES_WHERE_NONE")
                                             : where.toLocalFile());
    showWhereButton.setEnabled(!where.isEmpty());
    clearWhereButton.setEnabled(!where.isEmpty());

    const QString fontName = controller.userDefaults().value(QStringLiteral("FontName")).toString();
    fontButton.setText(fontName.isEmpty() ? localizedString("PREFERENCES_FONT_CHOOSE") : fontName);
    fontSizeBox.setValue(controller.valueForCPFSetting(QStringLiteral("FontSize2")).toDouble());
    boldCheck.setChecked(controller.valueForCPFSetting(QStringLiteral("IsFontBold2")).toBool());
    spacingBox.setValue(
        controller.valueForCPFSetting(QStringLiteral("CaptionSpacing2")).toDouble());
    marginBox.setValue(controller.valueForCPFSetting(QStringLiteral("CaptionMargin2")).toDouble());
    showMessageCheck.setChecked(
        controller.userDefaults().value(QStringLiteral("IsShowMessage")).toBool());
    anotherColorCheck.setChecked(controller.menuState().isAnotherDefaultColor);
}

void PreferencesWindow::saveCaptionSetting(const char *cpfSetting, const QVariant &value) {
    controller.saveValue(value, QLatin1String(cpfSetting));
    // Captions are laid out when they load: reloading them in the same
    // encoding shows the change now.
    controller.changeTextEncoding(controller.inspectorState().textEncodingItem);
}

void PreferencesWindow::chooseCaptionFont() {
    bool isChosen = false;
    const QFont initial =
        fontForFontName(controller.userDefaults().value(QStringLiteral("FontName")).toString());
    const QFont chosen =
        QFontDialog::getFont(&isChosen, initial, this, localizedString("PREFERENCES_FONT"));
    if (!isChosen) {
        return;
    }
    controller.userDefaults().setValue(QStringLiteral("FontName"), fontNameForFont(chosen));
    // A font never adjusted starts from the fallbacks, its own bold included.
    showSettings();
    controller.changeTextEncoding(controller.inspectorState().textEncodingItem);
}

void PreferencesWindow::chooseWhereFolder() {
    const QUrl folder = QFileDialog::getExistingDirectoryUrl(
        this, localizedString("PREFERENCES_WHERE_CHOOSE"), controller.whereFolder());
    if (!folder.isEmpty()) {
        controller.setWhereFolder(folder);
        showSettings();
    }
}

}  // namespace tolvane
