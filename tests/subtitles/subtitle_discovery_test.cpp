#include "subtitles/subtitle_discovery.h"

#include <gtest/gtest.h>

#include "subtitle_test_folder.h"
#include "support/qt_printers.h"

namespace tolvane {
namespace {

// Each case in a folder of its own: the files written, the video and the
// type asked for, with or without the BDMV pass and the chosen folder
// "where"; each found file as "<ptype> <path below the case's folder>".
TEST(RealSubtitleURL, FindsBesideTheVideoThenInTheChosenFolderThenByDiscTitle) {
    struct Case {
        const char *what;
        QStringList files;
        const char *video;
        const char *type;
        bool bdmv;
        bool hasWhere;
        QStringList found;
    };
    const QStringList beside = {"show/a.mkv",  "show/a.smi",  "show/a*.smi",
                                "show/a*.srt", "show/ab.smi", "show/a-extra.srt"};
    // Korean releases ship "Movie.SMI" beside "movie.avi".
    const QStringList cased = {"show/movie.avi", "show/movie.SRT",      "show/Movie.smi",
                               "show/MOVIE.Smi", "show/movie*.SMI",     "show/movies.smi",
                               "other/Ep.MKV",   "where/Tolvane/EP.srt"};
    const QStringList disc = {"discs/Title/BDMV/STREAM/00001.m2ts", "where/Tolvane/Title.smi",
                              "where/Tolvane/Title*.smi"};
    const QStringList chosen = {"show/c.mkv", "where/Tolvane/c.srt"};
    const char *stream = "discs/Title/BDMV/STREAM/00001.m2ts";
    // clang-format off
    const Case cases[] = {
        {"plain, then the asterisk form", beside, "show/a.mkv", "smi", false, false,
         {"v show/a.smi", "v* show/a*.smi"}},
        {"the asterisk form alone", beside, "show/a.mkv", "srt", false, false, {"v* show/a*.srt"}},
        {"no such type", beside, "show/a.mkv", "ass", false, false, {}},
        {"names and extensions in any case", cased, "show/movie.avi", "smi", false, false,
         {"v show/MOVIE.Smi", "v show/Movie.smi", "v* show/movie*.SMI"}},
        {"an extension in any case", cased, "show/movie.avi", "srt", false, false,
         {"v show/movie.SRT"}},
        {"any case in the chosen folder", cased, "other/Ep.MKV", "srt", false, true,
         {"k where/Tolvane/EP.srt"}},
        {"the chosen folder", chosen, "show/c.mkv", "srt", false, true, {"k where/Tolvane/c.srt"}},
        {"no chosen folder given", chosen, "show/c.mkv", "srt", false, false, {}},
        {"a file beside the video hides the chosen folder",
         chosen + QStringList{"show/c.srt"}, "show/c.mkv", "srt", false, true,
         {"v show/c.srt"}},
        {"the disc title", disc, stream, "smi", true, true,
         {"b where/Tolvane/Title.smi", "b* where/Tolvane/Title*.smi"}},
        {"the disc title only for BDMV", disc, stream, "smi", false, true, {}},
        {"the disc title only when the other passes find nothing",
         disc + QStringList{"where/Tolvane/00001.smi"}, stream, "smi", true, true,
         {"k where/Tolvane/00001.smi"}},
    };
    // clang-format on
    for (const Case &c : cases) {
        test::TemporaryTree folder;
        for (const QString &file : c.files) {
            folder.write(file);
        }
        QStringList found;
        for (const FoundSubtitleFile &file :
             realSubtitleURL(folder.path(c.video), QString::fromLatin1(c.type), c.bdmv,
                             c.hasWhere ? folder.path("where") : QString())) {
            found << file.ptype + ' ' + folder.relative(file.url);
        }
        EXPECT_EQ(found, c.found) << c.what;
    }
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
