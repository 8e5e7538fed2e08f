#include "app_test_support.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
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

QString TemporaryTree::path(const QString &relativePath) const {
    return relativePath.isEmpty() ? QFileInfo(folder.path()).canonicalFilePath()
                                  : path() + QLatin1Char('/') + relativePath;
}

QUrl TemporaryTree::touch(const QString &relativePath, const QByteArray &contents) const {
    const QString filePath = path(relativePath);
    QDir().mkpath(QFileInfo(filePath).path());
    QFile file(filePath);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(contents);
    }
    return url(relativePath);
}

QUrl TemporaryTree::makeFolder(const QString &relativePath) const {
    QDir().mkpath(path(relativePath));
    return url(relativePath);
}

}  // namespace tolvane::test
