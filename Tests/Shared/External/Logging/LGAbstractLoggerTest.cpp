#include "Shared/External/Logging/LGAbstractLogger.h"

#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/LogWorld.h"

namespace vantor {
namespace {

using test::KeepingLogger;
using test::logText;
using testing::ElementsAre;

class KeptFormatter final : public LGLogFormatter {
public:
    std::optional<std::string> formatLogMessage(const LGLogMessage&) override { return {}; }
    void didAddToLogger(LGLogger& logger) override {
        calls.push_back("added to " + std::string(logger.loggerName()));
    }
    void willRemoveFromLogger(LGLogger& logger) override {
        calls.push_back("removed from " + std::string(logger.loggerName()));
    }
    std::vector<std::string> calls;
};

class LGAbstractLoggerTest : public testing::Test {
protected:
    test::ThreadedLog world;
    std::shared_ptr<KeepingLogger> logger = std::make_shared<KeepingLogger>(world.log);
    std::shared_ptr<KeptFormatter> formatter = std::make_shared<KeptFormatter>();
};

TEST_F(LGAbstractLoggerTest, ItsQueueBearsItsName) {
    EXPECT_EQ(logger->loggerQueue()->label(), "keeping");
    EXPECT_EQ(std::make_shared<LGAbstractLogger>(world.log)->loggerName(), "LGAbstractLogger");
}

TEST_F(LGAbstractLoggerTest, AFormatterIsSetAndRead) {
    EXPECT_EQ(logger->logFormatter(), nullptr);
    logger->setLogFormatter(formatter);
    EXPECT_EQ(logger->logFormatter(), formatter);
}

TEST_F(LGAbstractLoggerTest, FormattersAreToldOfTheirLogger) {
    const auto second = std::make_shared<KeptFormatter>();
    logger->setLogFormatter(formatter);
    logger->setLogFormatter(formatter);
    logger->setLogFormatter(second);
    EXPECT_EQ(logger->logFormatter(), second);
    EXPECT_THAT(formatter->calls, ElementsAre("added to keeping", "removed from keeping"));
    EXPECT_THAT(second->calls, ElementsAre("added to keeping"));
}

/// What is thrown when `ask` runs on `queue`.
template <class Ask>
std::string complaintOn(SerialQueue& queue, Ask ask) {
    std::string complaint;
    queue.sync([&] {
        try {
            ask();
        } catch (const std::logic_error& error) {
            complaint = error.what();
        }
    });
    return complaint;
}

TEST_F(LGAbstractLoggerTest, OnTheLoggersOwnQueueAskingForTheFormatterFails) {
    const std::string own = "MUST access ivar directly, NOT via self.* syntax.";
    EXPECT_EQ(complaintOn(*logger->loggerQueue(), [&] { logger->logFormatter(); }), own);
    EXPECT_EQ(complaintOn(*logger->loggerQueue(), [&] { logger->setLogFormatter(formatter); }),
              own);
}

TEST_F(LGAbstractLoggerTest, OnTheLogsQueueAskingForTheFormatterFails) {
    const std::string core = "Core architecture requirement failure";
    EXPECT_EQ(complaintOn(world.log.loggingQueue(), [&] { logger->logFormatter(); }), core);
    EXPECT_EQ(complaintOn(world.log.loggingQueue(), [&] { logger->setLogFormatter(formatter); }),
              core);
}

TEST_F(LGAbstractLoggerTest, KnowsOnWhichQueueItsCallerIs) {
    EXPECT_FALSE(logger->isOnGlobalLoggingQueue() || logger->isOnInternalLoggerQueue());
    bool global = false, own = false;
    world.log.loggingQueue().sync([&] { global = logger->isOnGlobalLoggingQueue(); });
    logger->loggerQueue()->sync([&] { own = logger->isOnInternalLoggerQueue(); });
    EXPECT_TRUE(global && own);
}

TEST_F(LGAbstractLoggerTest, SettingsOfALoggerThatHasGoneAreForgotten) {
    logger->setLogFormatter(formatter);
    logger.reset();
    world.log.flushLog();
    EXPECT_TRUE(formatter->calls.empty());
}

}  // namespace
}  // namespace vantor
