#include "Shared/External/SQLite/SQLDatabaseVerification.h"

#include <cstdio>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Shared/External/SQLite/SQLDatabase.h"
#include "Shared/External/SQLite/SQLOpenFlags.h"
#include "Tests/Support/SQLWorld.h"
#include "Tests/Support/TemporaryFolder.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class SQLDatabaseVerificationTest : public testing::Test {
protected:
    bool isValid() {
        SQLDatabase database(environment, file);
        EXPECT_TRUE(database.open());
        return database.isDatabaseValid();
    }
    void fill() {
        SQLDatabase database(environment, file);
        database.open();
        database.executeUpdate("create table t (a double primary key, b)");
        database.executeUpdate("create index i on t (b)");
        database.beginTransaction();
        for (int number = 0; number < 500; ++number)
            database.executeUpdate("insert into t values (?, ?)", number, std::string(20, 'x'));
        database.commit();
    }

    test::TemporaryFolder folder;
    std::filesystem::path file = folder / "a.db";
    test::CountedBusyWait wait;
    test::KeptLog log;
    SQLEnvironment environment{log, wait};
};

TEST_F(SQLDatabaseVerificationTest, AWholeFileIsValid) {
    fill();
    EXPECT_TRUE(isValid());
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(SQLDatabaseVerificationTest, AnEmptyFileIsValid) { EXPECT_TRUE(isValid()); }

TEST_F(SQLDatabaseVerificationTest, ZerosAndTextAreNoDatabase) {
    for (const char filling : {'\0', 'x'}) {
        std::ofstream(file, std::ios::binary) << std::string(8192, filling);
        EXPECT_FALSE(isValid());
    }
}

TEST_F(SQLDatabaseVerificationTest, ADamagedPageIsReportedAndNotValid) {
    fill();
    {
        std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
        stream.seekp(3 * 4096 + 8);
        stream << std::string(2000, '\x55');
    }
    EXPECT_FALSE(isValid());
    EXPECT_THAT(log.lines, ElementsAre(StartsWith("ATTENTION: integrity_check response ")));
}

TEST_F(SQLDatabaseVerificationTest, AFileThatWasCutOffIsNotValid) {
    fill();
    std::filesystem::resize_file(file, 2 * 4096);
    EXPECT_FALSE(isValid());
}

TEST_F(SQLDatabaseVerificationTest, AFileThatIsHeldElsewhereIsValid) {
    fill();
    SQLDatabase holder(environment, file);
    holder.open();
    ASSERT_TRUE(holder.beginTransaction());
    EXPECT_TRUE(isValid());
    EXPECT_THAT(log.lines,
                ElementsAre("Result is simple BUSY of the sqllite3 on isDatabaseCorrupted"));
}

TEST_F(SQLDatabaseVerificationTest, AFileWhoseCutWriteCantBeTakenBackNowIsValid) {
    fill();
    SQLDatabase writer(environment, file);
    writer.open();
    ASSERT_TRUE(writer.executeStatements("pragma cache_size = 1; begin; update t set b = 'y'"));
    // What a process leaves that dies here: a journal that nobody has locked.
    const auto left = folder / "left.db";
    std::filesystem::copy_file(file, left);
    std::filesystem::copy_file(file.string() + "-journal", left.string() + "-journal");
    SQLDatabase reader(environment, left);
    ASSERT_TRUE(reader.openWithFlags(kSQLOpenReadOnly));
    EXPECT_TRUE(reader.isDatabaseValid());
    EXPECT_NE(reader.lastErrorCode(), 0);
}

TEST_F(SQLDatabaseVerificationTest, AKnownFileThatIsHeldElsewhereIsValid) {
    fill();
    SQLDatabase database(environment, file), holder(environment, file);
    database.open();
    holder.open();
    ASSERT_TRUE(database.tableExists("t"));  // the schema is known
    ASSERT_TRUE(holder.beginTransaction());
    EXPECT_TRUE(database.isDatabaseValid());
    EXPECT_THAT(log.lines,
                ElementsAre("Result is simple BUSY of the sqllite3 on isDatabaseCorrupted"));
}

TEST_F(SQLDatabaseVerificationTest, AClosedConnectionIsNotValid) {
    EXPECT_FALSE(SQLDatabase(environment, file).isDatabaseValid());
}

TEST_F(SQLDatabaseVerificationTest, DoesNotAskWhetherAnExecutionIsRunning) {
    SQLDatabase database(environment);
    database.open();
    bool valid = false;
    database.makeFunctionNamed("check_it", 0,
                               [&](auto&&...) { valid = database.isDatabaseValid(); });
    database.executeUpdate("create table t (a)");
    EXPECT_TRUE(database.executeUpdate("insert into t values (check_it())"));
    EXPECT_TRUE(valid);
}

TEST_F(SQLDatabaseVerificationTest, AReportIsOKWhateverItsCaseAndTheBlanksAroundIt) {
    EXPECT_TRUE(isIntegrityReportOK("ok"));
    EXPECT_TRUE(isIntegrityReportOK("OK\n"));
    EXPECT_TRUE(isIntegrityReportOK(" \tOk\r\n"));
    EXPECT_FALSE(isIntegrityReportOK(""));
    EXPECT_FALSE(isIntegrityReportOK("o k"));
    EXPECT_FALSE(isIntegrityReportOK("ok\nrow 1 missing"));
}

}  // namespace
}  // namespace vantor
