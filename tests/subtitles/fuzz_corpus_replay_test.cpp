// Runs the fuzz seed corpus (the committed caption fixtures) through the fuzz
// targets' entry points.

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include "fuzz/fuzz_entry_points.h"

namespace tolvane {
namespace {

TEST(FuzzCorpusReplay, EverySeedPassesEveryEntryPoint) {
    const QDir seeds(QStringLiteral(TOLVANE_FIXTURE_DIR "/subtitles"));
    const QStringList names = seeds.entryList(QDir::Files, QDir::Name);
    ASSERT_GE(names.size(), 3);
    for (const QString &name : names) {
        QFile file(seeds.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
        const QByteArray bytes = file.readAll();
        const auto *data = reinterpret_cast<const std::uint8_t *>(bytes.constData());
        const auto size = std::size_t(bytes.size());
        fuzz::fuzzSamiParser(data, size);
        fuzz::fuzzSrtParser(data, size);
        fuzz::fuzzProcessingTag(data, size);
        SUCCEED() << name.toStdString();
    }
}

}  // namespace
}  // namespace tolvane
