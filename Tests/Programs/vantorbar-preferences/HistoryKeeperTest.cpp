#include "Programs/vantorbar-preferences/Model/HistoryKeeper.h"

#include <fstream>
#include <iterator>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/HistoryFile.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kTable =
    "create table hour_cpuhistory (sample double PRIMARY KEY NOT NULL, "
    "time double NOT NULL, empty integer NOT NULL, user double NOT NULL, "
    "system double NOT NULL, nice double NOT NULL)";
constexpr const char* kRows = "insert into hour_cpuhistory values (2, 12, 0, 12.5, 3.25, 0), "
                              "(3, 18, 1, 0, 0, 0)";
constexpr const char* kCount = "select count(*) from hour_cpuhistory";

class HistoryKeeperTest : public testing::Test {
protected:
    void makeFile(const char* name = "cpu.db") {
        test::HistoryFile file(folder / name);
        file.run(kTable);
        file.run(kRows);
    }
    std::string contents(const fs::path& path) const {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    test::TemporaryFolder folder, target;
    HistoryKeeper keeper{folder.path()};
};

TEST_F(HistoryKeeperTest, FactsAreThoseOfTheFilesThatAreThere) {
    EXPECT_EQ(keeper.facts(), HistoryFacts{});
    makeFile();
    std::ofstream(folder / "other.db") << "not ours";
    EXPECT_EQ(keeper.facts(), (HistoryFacts{1, fs::file_size(folder / "cpu.db")}));
}

TEST_F(HistoryKeeperTest, ClearingTakesTheSamplesAndLeavesTheTables) {
    makeFile();
    makeFile("combined_cpu.db");
    EXPECT_THAT(keeper.clear(), IsEmpty());
    EXPECT_EQ(test::HistoryFile(folder / "cpu.db").number(kCount), 0);
    EXPECT_EQ(test::HistoryFile(folder / "combined_cpu.db").number(kCount), 0);
}

TEST_F(HistoryKeeperTest, ProgramThatHasTheFileOpenGoesOnWritingIt) {
    makeFile();
    test::HistoryFile running(folder / "cpu.db");
    ASSERT_EQ(running.number(kCount), 2);
    EXPECT_THAT(keeper.clear(), IsEmpty());
    EXPECT_EQ(running.number(kCount), 0);
    running.run("insert into hour_cpuhistory values (4, 24, 0, 1, 1, 1)");
    EXPECT_EQ(test::HistoryFile(folder / "cpu.db").number(kCount), 1);
}

TEST_F(HistoryKeeperTest, NothingOfTheSamplesIsLeftInTheFile) {
    {
        test::HistoryFile file(folder / "cpu.db");
        file.run(kTable);
        file.run("create table day_cpuhistory (sample double, uuid varchar(100))");
        file.run("insert into day_cpuhistory values (1, 'a word to be forgotten')");
    }
    ASSERT_THAT(contents(folder / "cpu.db"), HasSubstr("a word to be forgotten"));
    keeper.clear();
    EXPECT_THAT(contents(folder / "cpu.db"), testing::Not(HasSubstr("a word to be forgotten")));
}

TEST_F(HistoryKeeperTest, OnlyHistoryIsCleared) {
    makeFile();
    test::HistoryFile(folder / "cpu.db")
        .run("create table notes (a); insert into notes values (1)");
    keeper.clear();
    EXPECT_EQ(test::HistoryFile(folder / "cpu.db").number("select count(*) from notes"), 1);
}

TEST_F(HistoryKeeperTest, FileThatCannotBeEmptiedIsComplainedOfAndLeftAsItIs) {
    makeFile("load.db");
    makeFile();
    std::ofstream(folder / "load.db") << std::string(5000, 'x');
    EXPECT_THAT(keeper.clear(), ElementsAre(HasSubstr("load.db")));
    EXPECT_EQ(contents(folder / "load.db"), std::string(5000, 'x'));
    EXPECT_EQ(test::HistoryFile(folder / "cpu.db").number(kCount), 0);
}

TEST_F(HistoryKeeperTest, CopyHasATableForEachScaleThatThereIs) {
    makeFile();
    keeper.exportTo(target.path());
    EXPECT_EQ(contents(target / "cpu-hour.csv"),
              "time,sample,empty,user,system,nice\n12,2,0,12.5,3.25,0\n18,3,1,,,\n");
    EXPECT_FALSE(fs::exists(target / "load-hour.csv"));
}

TEST_F(HistoryKeeperTest, CopyThatCannotBeWrittenIsComplainedOf) {
    makeFile();
    EXPECT_THAT(keeper.exportTo(target / "missing"), testing::Contains(HasSubstr("cpu-hour.csv")));
}

}  // namespace
}  // namespace vantor
