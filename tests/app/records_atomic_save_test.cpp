#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QSettings>
#include <QThread>
#include <csignal>

#include "app/played_state_records.h"
#include "app/user_defaults.h"
#include "app_test_support.h"

namespace tolvane {
namespace {

constexpr const char *kSaveLoopChildVariable = "TOLVANE_TEST_SAVE_LOOP_CHILD";
constexpr const char *kSaveLoopChildTest =
    "RecordsAtomicSave.DISABLED_ChildSavesInALoopUntilKilled";
constexpr int kEntriesPerRecord = 4000;

// A record whose every entry carries `generation`, so a reader can tell a
// whole record of one save from a mixture or a truncation.
TotalFdFlsData recordOfGeneration(int generation) {
    TotalFdFlsData total;
    for (int i = 0; i < kEntriesPerRecord; ++i) {
        FileEntry entry;
        entry.fsize = quint64(1000 + i);
        entry.laccs = QStringLiteral("2024-01-01 00:00:00.%1").arg(i % 1000, 3, 10, QChar('0'));
        entry.ctime = generation;
        entry.csubtitleidxs = {QStringLiteral("Episode %1#*QZR*SPC*KEY*#smi").arg(i)};
        total.ttfile.insert(QStringLiteral("/videos/series/Episode %1.mkv").arg(i), entry);
    }
    return total;
}

// Not a test of its own: the child process of the test below, started with the
// variable set. It saves ever newer records until it is killed.
TEST(RecordsAtomicSave, DISABLED_ChildSavesInALoopUntilKilled) {
    if (qEnvironmentVariableIsEmpty(kSaveLoopChildVariable)) {
        GTEST_SKIP() << "runs only as the child of AKillDuringASaveLeavesAWholeRecord";
    }
    // As the application does at start-up: the previous child may have been
    // killed while it was taking the settings' lock.
    removeOwnerlessSettingsLock();
    for (int generation = 1;; ++generation) {
        std::printf("saving %d\n", generation);
        std::fflush(stdout);
        PlayedStateRecords::storeTotalFdFlsData(recordOfGeneration(generation));
        std::printf("saved %d\n", generation);
        std::fflush(stdout);
    }
}

// Reads the child's lines: the generation last saved whole, and the one whose
// save had begun last.
void readProgress(QProcess &child, int &lastSavedGeneration, int &lastSavingGeneration) {
    while (child.canReadLine()) {
        const QByteArray line = child.readLine().trimmed();
        if (line.startsWith("saved ")) {
            lastSavedGeneration = line.mid(6).toInt();
        } else if (line.startsWith("saving ")) {
            lastSavingGeneration = line.mid(7).toInt();
        }
    }
}

TEST(RecordsAtomicSave, AKillDuringASaveLeavesAWholeRecord) {
    test::clearTolvaneSettings();
    PlayedStateRecords::storeTotalFdFlsData(recordOfGeneration(0));
    int killsInsideASave = 0;
    // The kill lands at a different point of the save loop in every round.
    for (int round = 0; round < 6; ++round) {
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QLatin1String(kSaveLoopChildVariable), QStringLiteral("1"));
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(),
                    {QStringLiteral("--gtest_also_run_disabled_tests"),
                     QStringLiteral("--gtest_filter=") + QLatin1String(kSaveLoopChildTest)});
        ASSERT_TRUE(child.waitForStarted());
        int lastSavedGeneration = 0;
        int lastSavingGeneration = 0;
        // Generous: on a loaded machine the first saves of a fresh child are slow.
        while (lastSavedGeneration < 2 && child.waitForReadyRead(120000)) {
            readProgress(child, lastSavedGeneration, lastSavingGeneration);
        }
        if (lastSavedGeneration < 2) {
            ::kill(pid_t(child.processId()), SIGKILL);
            child.waitForFinished();
        }
        ASSERT_GE(lastSavedGeneration, 2)
            << "the child never saved; it said: " << child.readAllStandardError().toStdString();
        QThread::usleep(unsigned(round) * 7000);
        ::kill(pid_t(child.processId()), SIGKILL);
        child.waitForFinished();
        readProgress(child, lastSavedGeneration, lastSavingGeneration);
        if (lastSavingGeneration > lastSavedGeneration) {
            ++killsInsideASave;
        }

        openTolvaneSettings()->sync();
        const TotalFdFlsData read = PlayedStateRecords::readTotalFdFlsData();
        ASSERT_EQ(read.ttfile.size(), kEntriesPerRecord) << "round " << round;
        const double generation = read.ttfile.first().ctime;
        EXPECT_GE(generation, lastSavedGeneration) << "round " << round;
        EXPECT_LE(generation, lastSavingGeneration) << "round " << round;
        for (const FileEntry &entry : read.ttfile) {
            ASSERT_EQ(entry.ctime, generation) << "a record mixed from two saves";
        }
    }
    RecordProperty("killsInsideASave", killsInsideASave);
    std::printf("kills that landed inside a save: %d of 6\n", killsInsideASave);
}

}  // namespace
}  // namespace tolvane
