#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QWidget>

namespace tolvane {

class AppController;

// The preferences: decoding mode, hardware decoding and 10-bit output, the
// default caption text encoding, the where folder (choose, show, clear), the
// caption font with its per-font size, bold, spacing and margin, on-screen
// messages and the alternative default colour. Mode, decoding and folder
// choices go through the controller; the caption font and the message switch
// are plain settings, read by the controller at the next caption load, which
// this window asks for at once.
// Thread-safety: main thread only.
class PreferencesWindow : public QWidget {
    Q_OBJECT
public:
    explicit PreferencesWindow(AppController &controller, QWidget *parent = nullptr);

    // The caption font as "FontName" stores it: a fontconfig pattern,
    // "Family" or "Family:style=Style" when the style is not implied by bold.
    static QString fontNameForFont(const QFont &font);
    static QFont fontForFontName(const QString &fontName);

protected:
    void showEvent(QShowEvent *event) override;

private:
    void showSettings();
    void chooseCaptionFont();
    void saveCaptionSetting(const char *cpfSetting, const QVariant &value);
    void chooseWhereFolder();

    AppController &controller;
    QComboBox decodingPopUp;
    QCheckBox gpuAccCheck;
    QCheckBox tenBitCheck;
    QComboBox textEncodingPopUp;
    QLabel whereFolderLabel;
    QPushButton chooseWhereButton;
    QPushButton showWhereButton;
    QPushButton clearWhereButton;
    QPushButton fontButton;
    QDoubleSpinBox fontSizeBox;
    QCheckBox boldCheck;
    QDoubleSpinBox spacingBox;
    QDoubleSpinBox marginBox;
    QCheckBox showMessageCheck;
    QCheckBox anotherColorCheck;
};

}  // namespace tolvane
