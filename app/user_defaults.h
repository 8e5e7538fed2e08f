#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QSettings>
#include <QString>
#include <QVariant>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tolvane {

// The application's user defaults: QSettings with organisation and application
// "Tolvane" (~/.config/Tolvane/Tolvane.conf), every key registered with its
// default by one table. A key never written reads as its registered default;
// values come back converted to the table's type, whatever the file holds.
// Thread-safety: any thread; every access opens the settings afresh, so a
// value written by another UserDefaults or another process is seen at once.

inline constexpr const char *kSettingsOrganisation = "Tolvane";
inline constexpr const char *kSettingsApplication = "Tolvane";

// One row of the settings table. `isPerFont` keys hold a dictionary from font
// name to value whose registered default has one entry, for the default font.
struct UserDefaultsEntry {
    const char *key;
    QMetaType::Type type;
    QVariant registeredDefault;
    bool isPerFont = false;
};

// The table, in registration order; the preferences window reads it too.
std::vector<UserDefaultsEntry> userDefaultsTable(const QString &defaultCaptionFontName);

// The caption font when nothing better is known (no font database at hand):
// fontconfig's generic sans-serif.
QString fallbackCaptionFontName();

// The default caption font as first registered. The font of choice depends on
// the fonts installed, and the per-font settings of the default font are kept
// under its name: computed afresh at every start, installing a CJK font would
// silently drop the user's size, bold and margin. The first start stores it
// under kRegisteredFontNameKey; later starts read it back without asking
// `preferredFontName`.
inline constexpr const char *kRegisteredFontNameKey = "RegisteredFontName";
QString registeredCaptionFontName(const std::function<QString()> &preferredFontName);

// The settings object of the application, with atomic saving required: sync()
// writes a new file and renames it over the old one, so a crash mid-save
// leaves the previous settings readable.
std::unique_ptr<QSettings> openTolvaneSettings();

// Removes the settings' lock file when a process was killed while taking it:
// such a file names no owner, and QSettings would wait it out for 30 s on the
// next save. A lock naming its owner, or too young to judge, is left alone.
// Returns whether one was removed. Called once at start-up.
bool removeOwnerlessSettingsLock();

class UserDefaults {
public:
    // Registers the table's defaults (registerDefaults), with the registered
    // caption font as the default "FontName".
    UserDefaults();
    explicit UserDefaults(const QString &defaultCaptionFontName);

    QVariant value(const QString &key) const;
    void setValue(const QString &key, const QVariant &value);
    const QVariant &registeredDefault(const QString &key) const;

    // Whether the settings file could be read: nothing when it could (or
    // does not exist yet), otherwise what is wrong with it. An unreadable
    // file is copied aside once ("Tolvane.conf.unreadable") before anything
    // is written over it, and every key reads as its registered default.
    std::optional<QString> checkSettingsReadable() const;

    // "DecodingPopUpItem" read afresh: 0 is Native mode, anything else FFmpeg.
    int currentDecodingMode() const;

    // The per-font caption settings ("IsFontBold2", "FontSize2",
    // "CaptionSpacing2", "CaptionMargin2") for the current "FontName", or the
    // fixed fallback for a font never adjusted.
    QVariant valueForCPFSetting(const QString &cpfSetting) const;
    // Stores `value` for the current "FontName" under `cpfSetting`, keeping
    // the other fonts' values; does nothing when no font name is set.
    void saveValue(const QVariant &value, const QString &cpfSetting);

private:
    const UserDefaultsEntry *entryForKey(const QString &key) const;

    std::vector<UserDefaultsEntry> table;
};

}  // namespace tolvane
