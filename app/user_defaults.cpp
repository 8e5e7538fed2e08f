#include "user_defaults.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSet>
#include <QSettings>
#include <mutex>

#include "base/log.h"
#include "caption_font.h"

namespace tolvane {
namespace {

constexpr const char *kBlankWindowFrame = " ";

struct PerFontFallback {
    const char *key;
    QVariant value;
};

// Equal to the registered defaults on purpose: a font never adjusted starts
// from the same values as the default font.
const std::vector<PerFontFallback> &perFontFallbacks() {
    static const std::vector<PerFontFallback> fallbacks = {
        {"IsFontBold2", false},
        {"FontSize2", 0.03},
        {"CaptionSpacing2", 0.6},
        {"CaptionMargin2", 0.1},
    };
    return fallbacks;
}

// A key whose stored value is not of its kind is reported once per run.
void logUnreadableValueOnce(const QString &key) {
    static std::mutex mutex;
    static QSet<QString> reported;
    const std::lock_guard lock(mutex);
    if (!reported.contains(key)) {
        reported.insert(key);
        logWarning(QStringLiteral("the setting \"%1\" cannot be read; using its default").arg(key));
    }
}

QVariant convertedTo(QVariant value, QMetaType::Type type) {
    if (!value.convert(QMetaType(type))) {
        return {};
    }
    return value;
}

}  // namespace

std::vector<UserDefaultsEntry> userDefaultsTable(const QString &defaultCaptionFontName) {
    const auto perFont = [&defaultCaptionFontName](const QVariant &value) {
        return QVariant(QVariantMap{{defaultCaptionFontName, value}});
    };
    return {
        {"FontName", QMetaType::QString, defaultCaptionFontName},
        {"IsFontBold2", QMetaType::Bool, perFont(false), true},
        {"FontSize2", QMetaType::Double, perFont(0.03), true},
        {"CaptionSpacing2", QMetaType::Double, perFont(0.6), true},
        {"CaptionMargin2", QMetaType::Double, perFont(0.1), true},
        {"IsGPUAccForFF", QMetaType::Int, 1},
        {"Is10bitModeForFF", QMetaType::Int, 1},
        {"Volume", QMetaType::Double, 1.0},
        {"IsShowInspector", QMetaType::Bool, false},
        {"IsShowPlaylist", QMetaType::Bool, false},
        {"MainWindowFrameMono2", QMetaType::QString, kBlankWindowFrame},
        {"MainWindowFrameDual2", QMetaType::QString, kBlankWindowFrame},
        {"InspectorWindowFrameMono2", QMetaType::QString, kBlankWindowFrame},
        {"InspectorWindowFrameDual2", QMetaType::QString, kBlankWindowFrame},
        {"PlaylistWindowFrameMono2", QMetaType::QString, kBlankWindowFrame},
        {"PlaylistWindowFrameDual2", QMetaType::QString, kBlankWindowFrame},
        {"AutoPlay", QMetaType::Int, 1},
        {"AspectRatio", QMetaType::QString, "SAR"},
        {"Awesome", QMetaType::Int, 0},
        {"AnotherDefaultColor", QMetaType::Int, 0},
        {"TextEncodingPopUpItem2", QMetaType::Int, 3},
        {"IsShowMessage", QMetaType::Bool, true},
        {"DecodingPopUpItem", QMetaType::Int, 1},
        {"WhereURLData", QMetaType::QByteArray, QByteArray()},
        {"QZRRecentIsFolder", QMetaType::Bool, false},
        {"QZRRecentFdFlsData", QMetaType::QByteArray, QByteArray()},
        {"QZRTotalFdFlsData", QMetaType::QByteArray, QByteArray()},
    };
}

QString fallbackCaptionFontName() { return QStringLiteral("sans-serif"); }

std::unique_ptr<QSettings> openTolvaneSettings() {
    auto settings = std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                                QLatin1String(kSettingsOrganisation),
                                                QLatin1String(kSettingsApplication));
    settings->setAtomicSyncRequired(true);
    return settings;
}

bool removeOwnerlessSettingsLock() {
    // QLockFile writes the owner right after creating the file, so a lock
    // without one for a second is left over from a kill.
    constexpr qint64 kOwnerWritingGraceMs = 1000;
    const QString lockPath = openTolvaneSettings()->fileName() + QLatin1String(".lock");
    const QFileInfo lockInfo(lockPath);
    if (!lockInfo.exists()) {
        return false;
    }
    qint64 ownerPid = 0;
    QString ownerHost;
    QString ownerApplication;
    if (QLockFile(lockPath).getLockInfo(&ownerPid, &ownerHost, &ownerApplication)) {
        return false;
    }
    const qint64 ageMs = lockInfo.lastModified().msecsTo(QDateTime::currentDateTime());
    return ageMs > kOwnerWritingGraceMs && QFile::remove(lockPath);
}

QString registeredCaptionFontName(const std::function<QString()> &preferredFontName) {
    const auto settings = openTolvaneSettings();
    const QString registered = settings->value(QLatin1String(kRegisteredFontNameKey)).toString();
    if (!registered.isEmpty()) {
        return registered;
    }
    const QString chosen = preferredFontName();
    settings->setValue(QLatin1String(kRegisteredFontNameKey), chosen);
    settings->sync();
    return chosen;
}

UserDefaults::UserDefaults()
    : UserDefaults(registeredCaptionFontName([] { return preferredCaptionFontName(); })) {}

UserDefaults::UserDefaults(const QString &defaultCaptionFontName)
    : table(userDefaultsTable(defaultCaptionFontName)) {}

const UserDefaultsEntry *UserDefaults::entryForKey(const QString &key) const {
    for (const UserDefaultsEntry &entry : table) {
        if (key == QLatin1String(entry.key)) {
            return &entry;
        }
    }
    return nullptr;
}

const QVariant &UserDefaults::registeredDefault(const QString &key) const {
    static const QVariant kUnregistered;
    const UserDefaultsEntry *entry = entryForKey(key);
    return entry ? entry->registeredDefault : kUnregistered;
}

QVariant UserDefaults::value(const QString &key) const {
    const UserDefaultsEntry *entry = entryForKey(key);
    const auto settings = openTolvaneSettings();
    if (!settings->contains(key)) {
        return entry ? entry->registeredDefault : QVariant();
    }
    const QVariant stored = settings->value(key);
    if (!entry) {
        return stored;
    }
    const QMetaType::Type storedType = entry->isPerFont ? QMetaType::QVariantMap : entry->type;
    const QVariant converted = convertedTo(stored, storedType);
    if (!converted.isValid()) {
        logUnreadableValueOnce(key);
        return entry->registeredDefault;
    }
    return converted;
}

void UserDefaults::setValue(const QString &key, const QVariant &value) {
    const auto settings = openTolvaneSettings();
    settings->setValue(key, value);
    settings->sync();
}

std::optional<QString> UserDefaults::checkSettingsReadable() const {
    const auto settings = openTolvaneSettings();
    settings->allKeys();
    if (settings->status() == QSettings::NoError) {
        return std::nullopt;
    }
    const QString fileName = settings->fileName();
    const QString keptCopy = fileName + QLatin1String(".unreadable");
    QFile::remove(keptCopy);
    const bool isKept = QFile::copy(fileName, keptCopy);
    return QStringLiteral("the settings file %1 cannot be read (%2); starting with the defaults%3")
        .arg(fileName,
             settings->status() == QSettings::FormatError ? QStringLiteral("damaged")
                                                          : QStringLiteral("no access"),
             isKept ? QStringLiteral(", the file is kept as ") + keptCopy : QString());
}

int UserDefaults::currentDecodingMode() const {
    return value(QStringLiteral("DecodingPopUpItem")).toInt();
}

QVariant UserDefaults::valueForCPFSetting(const QString &cpfSetting) const {
    QVariant fallback;
    QMetaType::Type type = QMetaType::Double;
    for (const PerFontFallback &candidate : perFontFallbacks()) {
        if (cpfSetting == QLatin1String(candidate.key)) {
            fallback = candidate.value;
            type = QMetaType::Type(candidate.value.typeId());
        }
    }
    const QString fontName = value(QStringLiteral("FontName")).toString();
    if (!fontName.isEmpty()) {
        const QVariantMap perFontValues = value(cpfSetting).toMap();
        const auto found = perFontValues.constFind(fontName);
        if (found != perFontValues.cend()) {
            const QVariant converted = convertedTo(*found, type);
            if (converted.isValid()) {
                return converted;
            }
        }
    }
    return fallback;
}

void UserDefaults::saveValue(const QVariant &value, const QString &cpfSetting) {
    const QString fontName = this->value(QStringLiteral("FontName")).toString();
    if (fontName.isEmpty()) {
        return;
    }
    QVariantMap perFontValues = this->value(cpfSetting).toMap();
    perFontValues.insert(fontName, value);
    setValue(cpfSetting, perFontValues);
}

}  // namespace tolvane
