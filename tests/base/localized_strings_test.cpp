// The English and Korean message tables answer for the same keys, with the
// same placeholders, and the compiled tables are the ones the build embeds.

#include "base/localized_strings.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QXmlStreamReader>

namespace tolvane {
namespace {

struct Message {
    QString text;  // the translation, or the source when there is none
    bool isFinished = false;
};

QMap<QString, Message> readTable(const QString &language) {
    QFile file(QStringLiteral(TOLVANE_TRANSLATIONS_DIR "/tolvane_%1.ts").arg(language));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    QMap<QString, Message> table;
    QXmlStreamReader xml(&file);
    QString id;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("message")) {
            id = xml.attributes().value(QLatin1String("id")).toString();
        } else if (xml.name() == QLatin1String("translation")) {
            const bool isUnfinished =
                xml.attributes().value(QLatin1String("type")) == QLatin1String("unfinished");
            const QString text = xml.readElementText();
            table[id] = {text, !isUnfinished && !text.isEmpty()};
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return table;
}

QSet<QString> placeholdersOf(const QString &text) {
    QSet<QString> found;
    for (const auto &match : QRegularExpression(QStringLiteral("%\\d")).globalMatch(text)) {
        found.insert(match.captured());
    }
    return found;
}

TEST(LocalizedStrings, EnglishAndKoreanTablesMatchKeyForKey) {
    const QMap<QString, Message> english = readTable(QStringLiteral("en"));
    const QMap<QString, Message> korean = readTable(QStringLiteral("ko"));
    ASSERT_FALSE(english.isEmpty());
    EXPECT_EQ(QStringList(english.keys()), QStringList(korean.keys()));

    QTranslator compiledKorean;
    ASSERT_TRUE(compiledKorean.load(QStringLiteral(":/i18n/tolvane_ko.qm")));
    for (auto it = korean.cbegin(); it != korean.cend(); ++it) {
        const std::string key = it.key().toStdString();
        EXPECT_TRUE(it->isFinished) << key;
        EXPECT_EQ(placeholdersOf(it->text), placeholdersOf(english.value(it.key()).text)) << key;
        EXPECT_EQ(compiledKorean.translate(nullptr, key.c_str()), it->text) << key;
    }
}

}  // namespace
}  // namespace tolvane
