#include "subtitles/subtitle_discovery.h"

#include <gtest/gtest.h>

#include "subtitle_test_folder.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

class SubtitleDiscoveryTest : public ::testing::Test {
protected:
    // "<ptype> <path relative to the root>" for each found file.
    QStringList found(const QString &video, const char *type, bool bdmv = false,
                      const QString &where = {}) {
        QStringList lines;
        for (const FoundSubtitleFile &file :
             realSubtitleURL(folder.path(video), QString::fromLatin1(type), bdmv,
                             where.isEmpty() ? QString() : folder.path(where))) {
            lines << file.ptype + ' ' + folder.relative(file.url);
        }
        return lines;
    }
    test::SubtitleTestFolder folder;
};

TEST_F(SubtitleDiscoveryTest, BesideTheVideoPlainThenAsteriskForm) {
    folder.write("show/a.mkv");
    folder.write("show/a.smi");
    folder.write("show/a*.smi");
    folder.write("show/a*.srt");
    folder.write("show/ab.smi");  // another name: never matched as a pattern
    folder.write("show/a-extra.srt");
    EXPECT_EQ(found("show/a.mkv", "smi"), (QStringList{"v show/a.smi", "v* show/a*.smi"}));
    EXPECT_EQ(found("show/a.mkv", "srt"), QStringList{"v* show/a*.srt"}) << "the asterisk alone";
    EXPECT_EQ(found("show/a.mkv", "ass"), QStringList{});
}

// Korean releases ship "Movie.SMI" beside "movie.avi".
TEST_F(SubtitleDiscoveryTest, NamesAndExtensionsMatchWithoutRegardToCase) {
    folder.write("show/movie.avi");
    folder.write("show/movie.SRT");
    folder.write("show/Movie.smi");
    folder.write("show/MOVIE.Smi");
    folder.write("show/movie*.SMI");
    folder.write("show/movies.smi");
    EXPECT_EQ(found("show/movie.avi", "smi"),
              (QStringList{"v show/MOVIE.Smi", "v show/Movie.smi", "v* show/movie*.SMI"}));
    EXPECT_EQ(found("show/movie.avi", "srt"), QStringList{"v show/movie.SRT"});
    folder.write("other/Ep.MKV");
    folder.write("where/Tolvane/EP.srt");
    EXPECT_EQ(found("other/Ep.MKV", "srt", false, "where"), QStringList{"k where/Tolvane/EP.srt"});
}

TEST_F(SubtitleDiscoveryTest, ChosenFolderOnlyWhenNothingIsBesideTheVideo) {
    folder.write("show/c.mkv");
    folder.write("where/Tolvane/c.srt");
    EXPECT_EQ(found("show/c.mkv", "srt", false, "where"), QStringList{"k where/Tolvane/c.srt"});
    EXPECT_EQ(found("show/c.mkv", "srt"), QStringList{}) << "no chosen folder given";

    folder.write("show/c.srt");
    EXPECT_EQ(found("show/c.mkv", "srt", false, "where"), QStringList{"v show/c.srt"})
        << "a file beside the video hides the chosen folder";
}

TEST_F(SubtitleDiscoveryTest, DiscTitleOnlyForBdmvAndOnlyWhenTheOtherPassesFoundNothing) {
    folder.write("discs/Title/BDMV/STREAM/00001.m2ts");
    folder.write("where/Tolvane/Title.smi");
    folder.write("where/Tolvane/Title*.smi");
    const QString video = "discs/Title/BDMV/STREAM/00001.m2ts";
    EXPECT_EQ(found(video, "smi", true, "where"),
              (QStringList{"b where/Tolvane/Title.smi", "b* where/Tolvane/Title*.smi"}));
    EXPECT_EQ(found(video, "smi", false, "where"), QStringList{});

    folder.write("where/Tolvane/00001.smi");
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
