#include "app/user_defaults.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

#include "app/caption_font.h"
#include "app_test_support.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

class UserDefaultsTest : public ::testing::Test {
protected:
    void SetUp() override { test::clearTolvaneSettings(); }

    UserDefaults defaults{QStringLiteral("Caption Face:style=Light")};
};

TEST_F(UserDefaultsTest, ValuesComeBackWithTheTableTypesAndOtherWritersAreSeen) {
    const struct {
        const char *key;
        QVariant stored;
        QVariant read;
    } cases[] = {
        {"Volume", 0.25f, 0.25},
        {"AutoPlay", 0, 0},
        {"IsShowPlaylist", true, true},
        {"AspectRatio", "16:9", "16:9"},
    };
    const UserDefaults reread{QStringLiteral("Caption Face:style=Light")};
    for (const auto &c : cases) {
        defaults.setValue(c.key, c.stored);
        EXPECT_EQ(reread.value(c.key), c.read) << c.key;
        EXPECT_EQ(reread.value(c.key).metaType(), c.read.metaType()) << c.key;
    }
}

TEST_F(UserDefaultsTest, EachFontKeepsItsOwnCaptionSettings) {
    const struct {
        const char *key;
        QVariant fallback;
        QVariant adjusted;
    } cases[] = {
        {"IsFontBold2", false, true},
        {"FontSize2", 0.03, 0.05},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(defaults.valueForCPFSetting(c.key), c.fallback) << c.key;
        defaults.saveValue(c.adjusted, c.key);
        EXPECT_EQ(defaults.valueForCPFSetting(c.key), c.adjusted) << c.key;
    }

    defaults.setValue("FontName", "Another Face");
    for (const auto &c : cases) {
        EXPECT_EQ(defaults.valueForCPFSetting(c.key), c.fallback) << c.key;
        EXPECT_EQ(defaults.value(c.key).toMap().value("Caption Face:style=Light"), c.adjusted)
            << c.key;
    }

    defaults.setValue("FontName", "");
    defaults.saveValue(0.09, "FontSize2");
    EXPECT_EQ(defaults.valueForCPFSetting("FontSize2"), QVariant(0.03));
    EXPECT_FALSE(defaults.value("FontSize2").toMap().contains(""));
}

TEST_F(UserDefaultsTest, OnlyAnOwnerlessOldSettingsLockIsRemoved) {
    const QString lockPath = openTolvaneSettings()->fileName() + QLatin1String(".lock");
    ASSERT_TRUE(QDir().mkpath(QFileInfo(lockPath).path()));
    const struct {
        const char *name;
        bool hasOwner;
        int ageSec;
        bool isRemoved;
    } cases[] = {
        {"left by a kill", false, 5, true},
        {"just being created", false, 0, false},
        {"held by a live process", true, 5, false},
    };
    for (const auto &c : cases) {
        QLockFile heldLock(lockPath);
        QFile lockFile(lockPath);
        if (c.hasOwner) {
            ASSERT_TRUE(heldLock.tryLock(0)) << c.name;
            ASSERT_TRUE(lockFile.open(QIODevice::ReadWrite)) << c.name;
        } else {
            ASSERT_TRUE(lockFile.open(QIODevice::WriteOnly | QIODevice::Truncate)) << c.name;
        }
        ASSERT_TRUE(lockFile.setFileTime(QDateTime::currentDateTime().addSecs(-c.ageSec),
                                         QFileDevice::FileModificationTime))
            << c.name;
        lockFile.close();

        EXPECT_EQ(removeOwnerlessSettingsLock(), c.isRemoved) << c.name;
        EXPECT_EQ(QFile::exists(lockPath), !c.isRemoved) << c.name;
        if (c.hasOwner) {
            heldLock.unlock();
        }
        QFile::remove(lockPath);
    }
    EXPECT_FALSE(removeOwnerlessSettingsLock()) << "no lock at all";
}

TEST(CaptionFont, PrefersKoreanNotoAtTheLightestInstalledWeight) {
    const QList<InstalledFontFace> faces = {
        {"Noto Sans CJK JP", "Light", 50},   {"Noto Sans CJK KR", "Bold", 200},
        {"Noto Sans CJK KR", "Regular", 80}, {"Noto Sans CJK KR", "DemiLight", 55},
        {"Noto Sans CJK SC", "Thin", 0},
    };
    EXPECT_EQ(preferredCaptionFontNameAmong(faces), "Noto Sans CJK KR:style=DemiLight");
    EXPECT_EQ(preferredCaptionFontNameAmong({faces[0], faces[4]}), "Noto Sans CJK JP:style=Light");
    EXPECT_EQ(preferredCaptionFontNameAmong({}), "");

    EXPECT_FALSE(preferredCaptionFontName().isEmpty())
        << "an empty font name would drop per-font settings";
}

// Installing or removing a CJK font must not move the default font away from
// the size, bold and margin the user set for it.
TEST(CaptionFont, TheDefaultFontIsRegisteredOnceAndKept) {
    test::clearTolvaneSettings();
    const QString installedChoice = preferredCaptionFontName();
    const QString firstDefault = QStringLiteral("Old Default Font");
    {
        const auto settings = openTolvaneSettings();
        settings->setValue("RegisteredFontName", firstDefault);
    }
    UserDefaults defaults;
    EXPECT_EQ(defaults.registeredDefault("FontName"), QVariant(firstDefault));
    defaults.saveValue(0.05, "FontSize2");
    EXPECT_EQ(UserDefaults().valueForCPFSetting("FontSize2"), QVariant(0.05));

    test::clearTolvaneSettings();
    EXPECT_EQ(UserDefaults().registeredDefault("FontName"), QVariant(installedChoice));
    EXPECT_EQ(openTolvaneSettings()->value("RegisteredFontName"), QVariant(installedChoice))
        << "registered at the first start";
}

}  // namespace
}  // namespace tolvane
