#include "localized_strings.h"

#include <QCoreApplication>
#include <QTranslator>
#include <memory>

namespace tolvane {

QString localizedString(const char *key) { return qtTrId(key); }

QString installLocalizedStrings(const QLocale &locale) {
    // Translators live as long as the application; installing twice is harmless.
    static std::unique_ptr<QTranslator> english;
    static std::unique_ptr<QTranslator> native;
    if (!english) {
        english = std::make_unique<QTranslator>();
        if (english->load(QStringLiteral(":/i18n/tolvane_en.qm"))) {
            QCoreApplication::installTranslator(english.get());
        }
    }
    const QString language = QLocale::languageToCode(locale.language());
    if (language == QLatin1String("en")) {
        return language;
    }
    auto candidate = std::make_unique<QTranslator>();
    if (!candidate->load(QStringLiteral(":/i18n/tolvane_%1.qm").arg(language))) {
        return QStringLiteral("en");
    }
    if (native) {
        QCoreApplication::removeTranslator(native.get());
    }
    native = std::move(candidate);
    QCoreApplication::installTranslator(native.get());
    return language;
}

}  // namespace tolvane
