#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>

namespace tolvane::test {

// A temporary folder tree that tests fill with (empty or small) files; paths
// are canonical, as the player records them.
class TemporaryTree {
public:
    QString path(const QString &relativePath = {}) const;
    QUrl url(const QString &relativePath = {}) const {
        return QUrl::fromLocalFile(path(relativePath));
    }
    // `path` relative to the root, for readable expectations.
    QString relative(const QString &path) const;
    // Creates the file (and its folders) with `contents`; returns its path or URL.
    QString write(const QString &relativePath, const QByteArray &contents = {}) const;
    QUrl touch(const QString &relativePath, const QByteArray &contents = {}) const {
        return QUrl::fromLocalFile(write(relativePath, contents));
    }
    QUrl makeFolder(const QString &relativePath) const;

private:
    QTemporaryDir folder;
};

}  // namespace tolvane::test
