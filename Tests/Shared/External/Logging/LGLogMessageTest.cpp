#include "Shared/External/Logging/LGLogMessage.h"

#include <optional>

#include <gtest/gtest.h>

#include "Tests/Support/World.h"

namespace vantor {
namespace {

class LGLogMessageTest : public testing::Test {
protected:
    LGLogMessage messageFrom(const char* file, const char* function, std::int32_t options = 0) {
        return {world.context.ports(), "text", 13, 4, 7, file, function, 99, std::any(3), options};
    }
    test::World world;
};

TEST_F(LGLogMessageTest, TakesTextTimeAndThreadWhenItIsMade) {
    const LGLogMessage message = messageFrom("a/b/File.cpp", "run");
    world.machine.run(5);
    EXPECT_EQ(message.logMsg, "text");
    EXPECT_EQ(message.timestamp, simulated::SimulatedMachine::kStart);
    EXPECT_EQ(message.machThreadID, 1U);
    EXPECT_EQ(message.threadName, "main");
    EXPECT_EQ(message.queueLabel, "main");
    EXPECT_EQ(message.logContext, 7);
    EXPECT_EQ(std::any_cast<int>(message.tag), 3);
    EXPECT_EQ(message.fileName(), "File");
    EXPECT_EQ(message.methodName(), "run");
    EXPECT_EQ(message.lineNumber, 99);
}

TEST_F(LGLogMessageTest, KnowsTheQueueThatItWasMadeOn) {
    const auto queue = world.machine.workQueues.makeSerialQueue("dbqueue-cpu");
    std::string label;
    queue->sync([&] { label = messageFrom("", "").queueLabel; });
    EXPECT_EQ(label, "dbqueue-cpu");
}

TEST_F(LGLogMessageTest, AThreadIsNamedInHexadecimalDigits) {
    LGLogMessage message = messageFrom("", "");
    message.machThreadID = 0xBEEF;
    EXPECT_EQ(message.threadID(), "beef");
}

TEST_F(LGLogMessageTest, CopiedTextsOutliveTheirs) {
    std::string file = "some/folder/With a long name.cpp", function = "void a(long function)";
    const LGLogMessage message = messageFrom(file.c_str(), function.c_str(),
                                             LGLogMessageCopyFile | LGLogMessageCopyFunction);
    file.assign(file.size(), 'x');
    function.assign(function.size(), 'x');
    EXPECT_EQ(message.fileName(), "With a long name");
    EXPECT_EQ(message.methodName(), "void a(long function)");
}

TEST_F(LGLogMessageTest, ACopyIsIndependent) {
    std::optional<LGLogMessage> original =
        messageFrom("File.cpp", "run", LGLogMessageCopyFile | LGLogMessageCopyFunction);
    LGLogMessage copy = *original;
    original->logMsg = "other";
    original.reset();
    EXPECT_EQ(copy.logMsg, "text");
    EXPECT_STREQ(copy.file(), "File.cpp");
    EXPECT_STREQ(copy.function(), "run");
}

TEST_F(LGLogMessageTest, WithoutAFileItsNameIsEmpty) {
    const LGLogMessage message = messageFrom(nullptr, nullptr);
    EXPECT_EQ(message.fileName(), "");
    EXPECT_EQ(message.methodName(), "");
}

TEST_F(LGLogMessageTest, AFileNameIsWhatStandsBetweenTheLastSlashAndTheLastDot) {
    EXPECT_EQ(LGExtractFileNameWithoutExtension("Makefile"), "Makefile");
    EXPECT_EQ(LGExtractFileNameWithoutExtension("a/b/File.test.cpp"), "File.test");
    EXPECT_EQ(LGExtractFileNameWithoutExtension("a.b/File"), "File");
    EXPECT_EQ(LGExtractFileNameWithoutExtension("File.cpp"), "File");
    EXPECT_EQ(LGExtractFileNameWithoutExtension("a/"), "");
    EXPECT_EQ(LGExtractFileNameWithoutExtension(""), "");
}

}  // namespace
}  // namespace vantor
