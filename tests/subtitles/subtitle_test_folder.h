#pragma once

// A temporary folder of videos and caption files for the subtitle tests.

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace tolvane::test {

class SubtitleTestFolder {
public:
    // Writes `bytes` to `relativePath` below the root, making its folders.
    QString write(const QString &relativePath, const QByteArray &bytes = {}) {
        const QString path = root.filePath(relativePath);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << relativePath.toStdString();
        file.write(bytes);
        file.close();
        return QFileInfo(path).canonicalFilePath();
    }
    QString path(const QString &relativePath) const { return root.filePath(relativePath); }
    // `path` relative to the root, for readable expectations.
    QString relative(const QString &path) const {
        return QDir(QFileInfo(root.path()).canonicalFilePath()).relativeFilePath(path);
    }

private:
    QTemporaryDir root;
};

// Encodes `text` with ICU, for files in legacy encodings.
inline QByteArray encodeAs(const QString &text, const char *icuName) {
    UErrorCode status = U_ZERO_ERROR;
    UConverter *converter = ucnv_open(icuName, &status);
    QByteArray bytes(text.size() * 4 + 8, '\0');
    const int32_t length = ucnv_fromUChars(converter, bytes.data(), int32_t(bytes.size()),
                                           reinterpret_cast<const UChar *>(text.utf16()),
                                           int32_t(text.size()), &status);
    ucnv_close(converter);
    EXPECT_TRUE(U_SUCCESS(status)) << icuName << ": " << u_errorName(status);
    bytes.truncate(length);
    return bytes;
}

}  // namespace tolvane::test
