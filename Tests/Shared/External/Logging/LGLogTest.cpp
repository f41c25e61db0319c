#include "Shared/External/Logging/LGLog.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <future>
#include <map>
#include <thread>

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/LogWorld.h"
#include "Tests/Support/World.h"

namespace vantor {
namespace {

using test::KeepingLogger;
using test::logText;
using test::messageOf;
using test::ThreadedLog;
using testing::ElementsAre;

/// On the scripted machine, where queues run what they get at once.
class LGLogTest : public testing::Test {
protected:
    test::World world;
    LGLog& log = LGLog::sharedLog();
    std::shared_ptr<KeepingLogger> logger = std::make_shared<KeepingLogger>(log);
};

TEST_F(LGLogTest, AMessageReachesAllLoggers) {
    const auto second = std::make_shared<KeepingLogger>(log);
    log.addLogger(logger);
    log.addLogger(second);
    LGLogInfo("one");
    EXPECT_THAT(logger->texts, ElementsAre("(added)", "one"));
    EXPECT_THAT(second->texts, ElementsAre("(added)", "one"));
}

TEST_F(LGLogTest, ALoggerOfMaskZeroReceivesNothing) {
    log.addLogger(logger, 0);
    LGLogInfo("one");
    EXPECT_THAT(logger->texts, ElementsAre("(added)"));
}

TEST_F(LGLogTest, AMessageNeedsABitInCommonWithTheMask) {
    log.addLogger(logger, 8 | LGLogFlagInfo);
    for (const std::int32_t flag : {1, 2, 4, 8, 16, 5})
        logText(log, std::to_string(flag), flag);
    EXPECT_THAT(logger->texts, ElementsAre("(added)", "4", "8", "5"));
}

TEST_F(LGLogTest, WithoutAMaskEverythingIsAccepted) {
    log.addLogger(logger);
    for (const std::int32_t flag : {1, 2, 4, 8, 16, 32})
        logText(log, std::to_string(flag), flag);
    EXPECT_THAT(logger->texts, ElementsAre("(added)", "1", "2", "4", "8", "16"));
}

TEST_F(LGLogTest, NullIsNoLogger) {
    log.addLogger(nullptr);
    log.addLogger(nullptr, 4);
    log.removeLogger(nullptr);
    LGLogInfo("one");
    EXPECT_THAT(world.journal.logLines, ElementsAre("one"));
}

TEST_F(LGLogTest, ARemovedLoggerIsToldAndHearsNoMore) {
    log.addLogger(logger);
    LGLogInfo("one");
    log.removeLogger(logger);
    LGLogInfo("two");
    EXPECT_THAT(logger->texts, ElementsAre("(added)", "one", "(removed)"));
}

TEST_F(LGLogTest, AllLoggersAreRemovedTogether) {
    const auto second = std::make_shared<KeepingLogger>(log);
    log.addLogger(logger);
    log.addLogger(second);
    log.removeAllLoggers();
    LGLogInfo("one");
    EXPECT_THAT(logger->texts, ElementsAre("(added)", "(removed)"));
    EXPECT_THAT(second->texts, ElementsAre("(added)", "(removed)"));
}

TEST_F(LGLogTest, AFormatIsFilled) {
    log.addLogger(logger);
    log.log(LGDelivery::synchronous, 13, 4, 0, "f.cpp", "f", 1, {}, "%s: %d", "figure", 7);
    EXPECT_EQ(logger->texts.back(), "figure: 7");
}

TEST_F(LGLogTest, ANullFormatIsNoMessage) {
    log.addLogger(logger);
    LGLogInfo("one");
    log.log(LGDelivery::asynchronous, 13, 4, 0, "f.cpp", "f", 1, {}, nullptr);
    EXPECT_THAT(logger->texts, ElementsAre("(added)", "one"));
}

TEST_F(LGLogTest, EveryDeliveredMessageIsWitnessed) {
    LGLogInfo("one");
    LGLogInfo("two");
    EXPECT_THAT(world.journal.logLines, ElementsAre("one", "two"));
}

/// Keeps the last message whole.
class WholeLogger final : public LGAbstractLogger {
public:
    explicit WholeLogger(LGLog& log) : LGAbstractLogger(log) {}
    ~WholeLogger() override { finishQueue(); }
    void logMessage(const LGLogMessage& message) override { last = message; }
    std::optional<LGLogMessage> last;
};

TEST_F(LGLogTest, ACallSiteTellsWhereItIs) {
    const auto whole = std::make_shared<WholeLogger>(log);
    log.addLogger(whole);
    const std::int32_t line = __LINE__ + 1;
    LGLogInfo("text");
    ASSERT_TRUE(whole->last);
    EXPECT_EQ(whole->last->fileName(), "LGLogTest");
    EXPECT_THAT(whole->last->methodName(), testing::HasSubstr("TestBody"));
    EXPECT_EQ(whole->last->lineNumber, line);
    EXPECT_EQ(whole->last->logLevel, 13);
    EXPECT_EQ(whole->last->logFlag, 4);
    EXPECT_EQ(whole->last->logContext, 0);
    EXPECT_FALSE(whole->last->tag.has_value());
    EXPECT_EQ(whole->last->options, 0);
}

TEST_F(LGLogTest, FlushReachesEveryLogger) {
    log.addLogger(logger);
    log.flushLog();
    EXPECT_EQ(logger->flushes, 1);
}

TEST_F(LGLogTest, AtTheEndOnlyAUsedLogFlushes) {
    log.addLogger(logger);
    log.applicationWillTerminate();
    EXPECT_EQ(logger->flushes, 0);
    LGLogInfo("one");
    log.applicationWillTerminate();
    EXPECT_EQ(logger->flushes, 1);
}

/// Has no queue, so the log makes one.
class QueuelessLogger final : public LGLogger {
public:
    explicit QueuelessLogger(const Ports& ports) : ports_(ports) {}
    void logMessage(const LGLogMessage&) override { label = ports_.workQueues.currentLabel(); }
    std::shared_ptr<LGLogFormatter> logFormatter() override { return nullptr; }
    void setLogFormatter(std::shared_ptr<LGLogFormatter>) override {}
    std::string_view loggerName() const override { return "queueless"; }
    std::string label;

private:
    const Ports& ports_;
};

TEST_F(LGLogTest, ALoggerWithoutAQueueGetsOneOfItsName) {
    const auto queueless = std::make_shared<QueuelessLogger>(log.ports());
    log.addLogger(queueless);
    LGLogInfo("one");
    EXPECT_EQ(queueless->label, "queueless");
}

// --- With threads ------------------------------------------------------------------------------

int threadsNamed(const std::string& name) {
    int count = 0;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::string found;
        std::getline(std::ifstream(thread.path() / "comm"), found);
        count += found == name ? 1 : 0;
    }
    return count;
}

TEST(LGLogThreadsTest, ALogThatIsNotUsedHasNoThread) {
    ThreadedLog world;
    const auto logger = std::make_shared<KeepingLogger>(world.log);
    world.log.addLogger(logger);
    logger->setLogFormatter(nullptr);
    world.log.applicationWillTerminate();
    EXPECT_EQ(threadsNamed("vantor.log"), 0);
    EXPECT_EQ(threadsNamed("keeping"), 0);
}

TEST(LGLogThreadsTest, AMessageThatNobodyHearsStartsNothing) {
    ThreadedLog world;
    logText(world.log, "one");
    EXPECT_EQ(threadsNamed("vantor.log"), 0);
}

TEST(LGLogThreadsTest, WhatWasAskedBeforeTheFirstMessageIsDoneBeforeIt) {
    ThreadedLog world;
    const auto early = std::make_shared<KeepingLogger>(world.log);
    world.log.addLogger(early);
    logText(world.log, "one");
    world.log.flushLog();
    EXPECT_THAT(early->texts, ElementsAre("(added)", "one"));
}

TEST(LGLogThreadsTest, ASynchronousMessageIsDeliveredWhenTheCallReturns) {
    for (const std::int64_t processors : {1, 2}) {
        ThreadedLog world(processors);
        const auto logger = std::make_shared<KeepingLogger>(world.log);
        world.log.addLogger(logger);
        world.log.queueLogMessage(messageOf(world.log, "one"), LGDelivery::synchronous);
        EXPECT_EQ(logger->texts.back(), "one");
    }
}

TEST(LGLogThreadsTest, TheEndOfTheLogDeliversWhatWaits) {
    auto world = std::make_unique<ThreadedLog>();
    // The logger goes before its log, and the log's own share of it with the log.
    std::vector<std::string> texts;
    struct Watcher final : LGAbstractLogger {
        Watcher(LGLog& log, std::vector<std::string>& kept) : LGAbstractLogger(log), texts(kept) {}
        ~Watcher() override { finishQueue(); }
        void logMessage(const LGLogMessage& message) override { texts.push_back(message.logMsg); }
        std::vector<std::string>& texts;
    };
    world->log.addLogger(std::make_shared<Watcher>(world->log, texts));
    for (int number = 0; number < 300; ++number)
        logText(world->log, std::to_string(number));
    world.reset();
    EXPECT_EQ(texts.size(), 300U);
}

/// Holds the log up until it is let go.
class HoldingLogger final : public LGAbstractLogger {
public:
    explicit HoldingLogger(LGLog& log) : LGAbstractLogger(log, "holding") {}
    ~HoldingLogger() override { finishQueue(); }
    void logMessage(const LGLogMessage&) override {
        opened_.wait();
        ++delivered;
    }
    void open() { gate_.set_value(); }
    std::atomic<int> delivered = 0;

private:
    std::promise<void> gate_;
    std::shared_future<void> opened_ = gate_.get_future().share();
};

TEST(LGLogThreadsTest, TheThousandAndFirstMessageWaitsUntilTheFirstIsDelivered) {
    ThreadedLog world;
    const auto holder = std::make_shared<HoldingLogger>(world.log);
    world.log.addLogger(holder);
    for (int number = 0; number < LGLog::kMostWaiting; ++number)
        logText(world.log, "waits");
    auto last = std::async(std::launch::async, [&] {
        logText(world.log, "one too many");
        return holder->delivered.load();
    });
    EXPECT_EQ(last.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    holder->open();
    EXPECT_GE(last.get(), 1);
    world.log.flushLog();
    EXPECT_EQ(holder->delivered, LGLog::kMostWaiting + 1);
}

TEST(LGLogThreadsTest, AllLoggersSeeTheMessagesOfAllThreadsInOneOrder) {
    constexpr int kThreads = 8, kEach = 500;
    ThreadedLog world;
    const auto one = std::make_shared<KeepingLogger>(world.log);
    const auto other = std::make_shared<KeepingLogger>(world.log);
    world.log.addLogger(one);
    world.log.addLogger(other);
    {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < kThreads; ++thread)
            threads.emplace_back([&world, thread] {
                for (int number = 0; number < kEach; ++number)
                    logText(world.log, fmt::format("{} {:04}", thread, number));
            });
    }
    world.log.flushLog();
    EXPECT_EQ(one->texts.size(), 1U + kThreads * kEach);
    EXPECT_EQ(one->texts, other->texts);
    std::map<char, std::string> lastOfThread;
    for (std::size_t place = 1; place < one->texts.size(); ++place) {
        const std::string& text = one->texts[place];
        EXPECT_LT(std::exchange(lastOfThread[text[0]], text), text);
    }
}

TEST(LGLogThreadsTest, LoggersComeAndGoWhileMessagesFlow) {
    ThreadedLog world;
    const auto stays = std::make_shared<KeepingLogger>(world.log);
    world.log.addLogger(stays);
    std::jthread writer([&world] {
        for (int number = 0; number < 500; ++number)
            logText(world.log, "text");
    });
    for (int round = 0; round < 50; ++round) {
        auto passing = std::make_shared<KeepingLogger>(world.log);
        world.log.addLogger(passing);
        world.log.removeLogger(std::move(passing));
    }
    writer.join();
    world.log.flushLog();
    EXPECT_EQ(stays->texts.size(), 501U);
}

}  // namespace
}  // namespace vantor
