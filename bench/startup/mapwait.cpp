// Starts a program and prints its process id, the milliseconds from exec to the mapping of its
// first top-level window whose name holds a given text, as the X server reports it, and the CPU
// milliseconds (user + system) the program had used by then.
//   bench_mapwait <name-part> <program> [arguments...]
// The program is left running; a time-out of 30 s prints "timeout".
#include <X11/Xlib.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <sys/select.h>
#include <unistd.h>

static double nowMs()
{
    timespec t;
    clock_gettime(CLOCK_MONOTONIC, &t);
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

// CPU time (user + system, all threads) of a running process in milliseconds; -1 when unknown.
static double cpuMs(pid_t pid)
{
    clockid_t clock;
    timespec t;
    if (clock_getcpuclockid(pid, &clock) != 0 || clock_gettime(clock, &t) != 0)
        return -1;
    return t.tv_sec * 1e3 + t.tv_nsec / 1e6;
}

int main(int argc, char *argv[])
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: bench_mapwait <name-part> <program> [arguments...]\n");
        return 2;
    }
    Display *dpy = XOpenDisplay(nullptr);
    if (!dpy) {
        std::fprintf(stderr, "bench_mapwait: no display\n");
        return 2;
    }
    XSelectInput(dpy, DefaultRootWindow(dpy), SubstructureNotifyMask);
    XSync(dpy, False);

    const double start = nowMs();
    const pid_t pid = fork();
    if (pid == 0) {
        close(ConnectionNumber(dpy));
        dup2(2, 1);   // the caller reads this program's answer from standard output alone
        execvp(argv[2], argv + 2);
        _exit(127);
    }
    const int fd = ConnectionNumber(dpy);
    while (nowMs() - start < 30000) {
        while (XPending(dpy)) {
            XEvent e;
            XNextEvent(dpy, &e);
            if (e.type != MapNotify)
                continue;
            char *name = nullptr;
            if (XFetchName(dpy, e.xmap.window, &name) && name) {
                const bool match = std::strstr(name, argv[1]) != nullptr;
                XFree(name);
                if (match) {
                    const double ms = nowMs() - start;
                    std::printf("%d %.1f %.1f\n", int(pid), cpuMs(pid), ms);
                    return 0;
                }
            }
        }
        fd_set set;
        FD_ZERO(&set);
        FD_SET(fd, &set);
        timeval tv{0, 100000};
        select(fd + 1, &set, nullptr, nullptr, &tv);
    }
    std::printf("%d timeout\n", int(pid));
    return 1;
}
