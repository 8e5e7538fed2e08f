#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>

#include "support/test_media.h"

namespace tolvane::test {

// Every binary linking app_test_support.cpp keeps its settings in a temporary
// folder (XDG_CONFIG_HOME), inherited by its child processes. This removes them all.
void clearTolvaneSettings();

// A temporary folder tree that tests fill with (empty or small) files.
class TemporaryTree {
public:
    QString path(const QString &relativePath = {}) const;
    QUrl url(const QString &relativePath = {}) const {
        return QUrl::fromLocalFile(path(relativePath));
    }
    // Creates the file (and its folders) with `contents`; returns its URL.
    QUrl touch(const QString &relativePath, const QByteArray &contents = {}) const;
    QUrl makeFolder(const QString &relativePath) const;

private:
    QTemporaryDir folder;
};

}  // namespace tolvane::test
