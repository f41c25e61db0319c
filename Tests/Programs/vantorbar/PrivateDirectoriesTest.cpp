#include "Programs/vantorbar/PrivateDirectories.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "Platform/Simulated/SimulatedMachine.h"
#include "Tests/Support/HistoryFile.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

class PrivateDirectoriesTest : public testing::Test {
protected:
    PrivateDirectoriesTest() {
        own.setRoot(folder.path());
        fs::create_directories(databases());
    }
    fs::path databases() const { return *own.applicationSupport() / "Vantor Bar/databases"; }
    static fs::path copyIn(const PrivateDirectories& directories, const char* name) {
        return *directories.applicationSupport() / "Vantor Bar/databases" / name;
    }

    test::TemporaryFolder folder;
    simulated::SimulatedDirectories own;
};

TEST_F(PrivateDirectoriesTest, WritingToTheCopyLeavesTheHistoryAlone) {
    test::HistoryFile kept(databases() / "cpu.db");
    kept.run("create table hour_cpuhistory (sample); insert into hour_cpuhistory values (7)");

    const PrivateDirectories directories(own);
    test::HistoryFile copy(copyIn(directories, "cpu.db"));
    EXPECT_EQ(copy.number("select sample from hour_cpuhistory"), 7);
    copy.run("delete from hour_cpuhistory");

    EXPECT_EQ(kept.number("select count(*) from hour_cpuhistory"), 1);
}

TEST_F(PrivateDirectoriesTest, WhatIsNoHistoryIsNotCopied) {
    std::ofstream(databases() / "cpu.db") << std::string(9000, 'x');
    fs::create_directories(databases() / "load.db");

    const PrivateDirectories directories(own);

    for (const char* const name : {"cpu.db", "load.db", "gpu.db"})
        EXPECT_FALSE(fs::exists(copyIn(directories, name))) << name;
}

TEST_F(PrivateDirectoriesTest, LogsAreNobodysAndAllElseIsTheUsers) {
    const PrivateDirectories directories(own);
    EXPECT_NE(directories.logs(), own.logs());
    EXPECT_EQ(directories.preferences(), own.preferences());
    EXPECT_EQ(directories.formerPreferences(), own.formerPreferences());
    EXPECT_EQ(directories.resources(), own.resources());
    EXPECT_EQ(directories.systemRoot(), own.systemRoot());
}

TEST_F(PrivateDirectoriesTest, NothingStaysBehind) {
    fs::path made;
    {
        const PrivateDirectories directories(own);
        made = *directories.applicationSupport();
        EXPECT_TRUE(fs::exists(made));
    }
    EXPECT_FALSE(fs::exists(made));
}

}  // namespace
}  // namespace vantor
