// The floor of the overhead benchmark: the least a monitor of this machine can
// do each second. It reads the kernel's CPU, memory, adapter and disk counters
// and the free space of "/", counts the processes and appends one line to a
// file, once a second, with plain system calls and no library beyond libc.
//
//     overhead_floor LOGFILE
//
// It runs until SIGTERM or SIGINT.
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <initializer_list>

#include <dirent.h>
#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

namespace {

volatile sig_atomic_t stopRequested = 0;

void onStop(int) { stopRequested = 1; }

char buffer[1 << 16];

// Reads a whole kernel file; the number of bytes read, -1 when it cannot be opened.
long readWhole(const char* path)
{
    const int fd = ::open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return -1;
    long total = 0;
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n <= 0)
            break;
        total += n;
    }
    ::close(fd);
    return total;
}

int countProcesses()
{
    DIR* dir = ::opendir("/proc");
    if (!dir)
        return 0;
    int count = 0;
    while (const dirent* e = ::readdir(dir)) {
        if (e->d_name[0] >= '0' && e->d_name[0] <= '9')
            ++count;
    }
    ::closedir(dir);
    return count;
}

}  // namespace

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: overhead_floor LOGFILE\n");
        return 2;
    }
    struct sigaction sa {};
    sa.sa_handler = onStop;
    sigaction(SIGTERM, &sa, nullptr);
    sigaction(SIGINT, &sa, nullptr);

    timespec next {};
    clock_gettime(CLOCK_MONOTONIC, &next);
    while (!stopRequested) {
        long bytes = 0;
        for (const char* path : {"/proc/stat", "/proc/meminfo", "/proc/net/dev", "/proc/diskstats"})
            bytes += readWhole(path);
        struct statvfs vfs {};
        ::statvfs("/", &vfs);
        const int processes = countProcesses();

        char line[128];
        const int length = std::snprintf(line, sizeof line, "%ld,%llu,%d\r\n", bytes,
                                         static_cast<unsigned long long>(vfs.f_bavail) * vfs.f_frsize, processes);
        const int fd = ::open(argv[1], O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
        if (fd < 0 || ::write(fd, line, size_t(length)) != length) {
            std::fprintf(stderr, "overhead_floor: cannot write %s: %s\n", argv[1], std::strerror(errno));
            return 1;
        }
        ::close(fd);

        next.tv_sec += 1;
        while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &next, nullptr) == EINTR && !stopRequested) {
        }
    }
    return 0;
}
