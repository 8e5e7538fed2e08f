#include "temporary_tree.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace tolvane::test {

QString TemporaryTree::path(const QString &relativePath) const {
    return relativePath.isEmpty() ? QFileInfo(folder.path()).canonicalFilePath()
                                  : path() + QLatin1Char('/') + relativePath;
}

QString TemporaryTree::relative(const QString &filePath) const {
    return QDir(path()).relativeFilePath(filePath);
}

QString TemporaryTree::write(const QString &relativePath, const QByteArray &contents) const {
    const QString filePath = path(relativePath);
    QDir().mkpath(QFileInfo(filePath).path());
    QFile file(filePath);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << relativePath.toStdString();
    file.write(contents);
    return filePath;
}

QUrl TemporaryTree::makeFolder(const QString &relativePath) const {
    QDir().mkpath(path(relativePath));
    return url(relativePath);
}

}  // namespace tolvane::test
