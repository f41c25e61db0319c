// Reads what the processor item reads, once a second, and does nothing with it: what any such
// program costs at the least on this machine.

#include <array>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysinfo.h>
#include <time.h>
#include <unistd.h>

namespace {

/// Sleeps until the clock shows the next whole second.
void sleepUntilWholeSecond() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const timespec next{now.tv_sec + 1, 0};
    while (clock_nanosleep(CLOCK_REALTIME, TIMER_ABSTIME, &next, nullptr) == EINTR) {
    }
}

bool readOnce(int counters) {
    static std::array<char, 65536> text;
    struct sysinfo info {};
    struct stat status {};
    // Twice: the item reads load averages and the thread count at different places.
    return pread(counters, text.data(), text.size(), 0) > 0 && sysinfo(&info) == 0 &&
           sysinfo(&info) == 0 && stat("/proc", &status) == 0;
}

}  // namespace

int main() {
    const int counters = open("/proc/stat", O_RDONLY | O_CLOEXEC);
    while (readOnce(counters))
        sleepUntilWholeSecond();
    std::perror("vantor_bare_loop");
    return 1;
}
