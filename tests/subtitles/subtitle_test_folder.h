#pragma once

// Caption files for the subtitle tests: a temporary tree, and text in legacy encodings.

#include <gtest/gtest.h>
#include <unicode/ucnv.h>

#include <QString>

#include "support/temporary_tree.h"

namespace tolvane::test {

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
