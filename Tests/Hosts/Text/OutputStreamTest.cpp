#include "Hosts/Text/OutputStream.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <string>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace vantor {
namespace {

/// A pipe whose ends can be closed one by one.
struct Pipe {
    Pipe() {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
        readEnd = ends[0];
        writeEnd = ends[1];
    }
    ~Pipe() {
        closeReadEnd();
        close(writeEnd);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    void closeReadEnd() {
        if (readEnd >= 0)
            close(readEnd);
        readEnd = -1;
    }
    std::string readSome() const {
        std::array<char, 65536> bytes;
        const auto size = read(readEnd, bytes.data(), bytes.size());
        return {bytes.data(), static_cast<std::size_t>(size < 0 ? 0 : size)};
    }

    int readEnd = -1, writeEnd = -1;
};

class OutputStreamTest : public testing::Test {
protected:
    OutputStreamTest() : before_(std::signal(SIGPIPE, SIG_IGN)) {}
    ~OutputStreamTest() override { std::signal(SIGPIPE, before_); }

private:
    void (*before_)(int);
};

TEST_F(OutputStreamTest, BytesReachTheReader) {
    const Pipe pipe;
    OutputStream stream(pipe.writeEnd);
    stream.write("one line\n");
    EXPECT_EQ(pipe.readSome(), "one line\n");
    EXPECT_EQ(stream.state(), OutputStream::State::open);
}

TEST_F(OutputStreamTest, MoreThanAPipeHoldsWaitsForTheReader) {
    const Pipe pipe;
    const std::string bytes(1'000'000, 'x');
    std::string arrived;
    std::thread reader([&] {
        while (arrived.size() < bytes.size())
            arrived += pipe.readSome();
    });
    OutputStream(pipe.writeEnd).write(bytes);
    reader.join();
    EXPECT_EQ(arrived, bytes);
}

TEST_F(OutputStreamTest, AReaderThatIsGoneClosesIt) {
    Pipe pipe;
    pipe.closeReadEnd();
    OutputStream stream(pipe.writeEnd);
    stream.write("one line\n");
    EXPECT_EQ(stream.state(), OutputStream::State::closed);
}

TEST_F(OutputStreamTest, AFullDiskIsAFailure) {
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(full, 0);
    OutputStream stream(full);
    stream.write("one line\n");
    EXPECT_EQ(stream.state(), OutputStream::State::failed);
    EXPECT_EQ(stream.error(), ENOSPC);
    close(full);
}

TEST_F(OutputStreamTest, AnInterruptEndsTheWaitForASlowReader) {
    const Pipe pipe, interrupt;
    ASSERT_EQ(write(interrupt.writeEnd, "!", 1), 1);
    OutputStream stream(pipe.writeEnd, interrupt.readEnd);
    stream.write(std::string(1'000'000, 'x'));  // nobody reads
    EXPECT_EQ(stream.state(), OutputStream::State::open);
    EXPECT_FALSE(stream.isReady());
}

}  // namespace
}  // namespace vantor
