#include "subtitles/subtitle_discovery.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "support/qt_printers.h"

namespace tolvane {
namespace {

class SubtitleDiscoveryTest : public ::testing::Test {
protected:
    // Creates the file (and its folders) below the temporary root.
    QString touch(const QString &relativePath) {
        const QString path = root.filePath(relativePath);
        QDir().mkpath(QFileInfo(path).absolutePath());
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << relativePath.toStdString();
        return QFileInfo(path).canonicalFilePath();
    }
    // "<ptype> <path relative to the root>" for each found file.
    QStringList found(const QString &video, const char *type, bool bdmv = false,
                      const QString &where = {}) {
        QStringList lines;
        const QString canonicalRoot = QFileInfo(root.path()).canonicalFilePath() + '/';
        for (const FoundSubtitleFile &file :
             realSubtitleURL(root.filePath(video), QString::fromLatin1(type), bdmv,
                             where.isEmpty() ? QString() : root.filePath(where))) {
            lines << file.ptype + ' ' + QString(file.url).remove(canonicalRoot);
        }
        return lines;
    }
    QTemporaryDir root;
};

TEST_F(SubtitleDiscoveryTest, BesideTheVideoPlainThenAsteriskForm) {
    touch("show/a.mkv");
    touch("show/a.smi");
    touch("show/a*.smi");
    touch("show/ab.smi");  // another name: never matched as a pattern
    EXPECT_EQ(found("show/a.mkv", "smi"), (QStringList{"v show/a.smi", "v* show/a*.smi"}));
    EXPECT_EQ(found("show/a.mkv", "srt"), QStringList{});
}

TEST_F(SubtitleDiscoveryTest, AsteriskFileAloneIsFoundLiterally) {
    touch("show/b.mkv");
    touch("show/b*.srt");
    touch("show/b-extra.srt");
    EXPECT_EQ(found("show/b.mkv", "srt"), QStringList{"v* show/b*.srt"});
}

TEST_F(SubtitleDiscoveryTest, ChosenFolderOnlyWhenNothingIsBesideTheVideo) {
    touch("show/c.mkv");
    touch("where/Tolvane/c.srt");
    EXPECT_EQ(found("show/c.mkv", "srt", false, "where"), QStringList{"k where/Tolvane/c.srt"});
    EXPECT_EQ(found("show/c.mkv", "srt"), QStringList{}) << "no chosen folder given";

    touch("show/c.srt");
    EXPECT_EQ(found("show/c.mkv", "srt", false, "where"), QStringList{"v show/c.srt"})
        << "a file beside the video hides the chosen folder";
}

TEST_F(SubtitleDiscoveryTest, DiscTitleOnlyForBdmvAndOnlyWhenTheOtherPassesFoundNothing) {
    touch("discs/Title/BDMV/STREAM/00001.m2ts");
    touch("where/Tolvane/Title.smi");
    touch("where/Tolvane/Title*.smi");
    const QString video = "discs/Title/BDMV/STREAM/00001.m2ts";
    EXPECT_EQ(found(video, "smi", true, "where"),
              (QStringList{"b where/Tolvane/Title.smi", "b* where/Tolvane/Title*.smi"}));
    EXPECT_EQ(found(video, "smi", false, "where"), QStringList{});

    touch("where/Tolvane/00001.smi");
    EXPECT_EQ(found(video, "smi", true, "where"), QStringList{"k where/Tolvane/00001.smi"});
}

TEST(DiscTitleInPath, ComponentBeforeTheFirstBdmv) {
    struct Case {
        const char *path;
        const char *title;
    };
    for (const Case &c :
         {Case{"/m/Title/BDMV/STREAM/1.m2ts", "Title"}, Case{"/m/A/BDMV/B/BDMV/STREAM/1.m2ts", "A"},
          Case{"/BDMV/STREAM/1.m2ts", ""}, Case{"/m/bdmv/STREAM/1.m2ts", ""},
          Case{"/m/Title/BDMVX/1.m2ts", ""}}) {
        EXPECT_EQ(discTitleInPath(QString::fromUtf8(c.path)), QString::fromUtf8(c.title)) << c.path;
    }
}

}  // namespace
}  // namespace tolvane
