#include "app_test_support.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <memory>

#include "app/user_defaults.h"

namespace tolvane::test {
namespace {

constexpr const char *kSettingsFolderVariable = "TOLVANE_TEST_SETTINGS_DIR";

// Set up before main() so that no QSettings of the process can see another folder.
struct IsolatedSettingsFolder {
    IsolatedSettingsFolder() {
        QByteArray folderPath = qgetenv(kSettingsFolderVariable);
        if (folderPath.isEmpty()) {
            settingsFolder = std::make_unique<QTemporaryDir>();
            folderPath = QFile::encodeName(settingsFolder->path());
            qputenv(kSettingsFolderVariable, folderPath);
        }
        qputenv("XDG_CONFIG_HOME", folderPath);
    }
    std::unique_ptr<QTemporaryDir> settingsFolder;
};

const IsolatedSettingsFolder isolatedSettingsFolder;

}  // namespace

void clearTolvaneSettings() {
    const auto settings = openTolvaneSettings();
    settings->clear();
    settings->sync();
}

}  // namespace tolvane::test
