#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>

namespace tolvane::test {

// Every test binary that links app_test_support.cpp runs with XDG_CONFIG_HOME
// pointing at a temporary folder, so QSettings never touches the user's
// settings. A child process started by a test inherits the same folder.
// Removes every stored setting; call it before each test that reads settings.
void clearTolvaneSettings();

// A temporary folder tree that tests fill with (empty or small) files.
class TemporaryTree {
public:
    TemporaryTree();
    bool isValid() const { return folder.isValid(); }
    QString path(const QString &relativePath = {}) const;
    QUrl url(const QString &relativePath = {}) const;
    // Creates the file (and its folders) with `contents`; returns its URL.
    QUrl touch(const QString &relativePath, const QByteArray &contents = {}) const;
    QUrl makeFolder(const QString &relativePath) const;

private:
    QTemporaryDir folder;
};

}  // namespace tolvane::test
