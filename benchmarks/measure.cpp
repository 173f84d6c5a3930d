// measure OUTPUT PROGRAM [ARGUMENT...]: runs the program and writes "SECONDS PEAK_KIB STATUS" to the file
// OUTPUT. It is small on purpose: the system counts the memory of whoever starts a program into the program's
// peak, so a big starter would hide a small program. STATUS is 128 + n after signal n.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: measure OUTPUT PROGRAM [ARGUMENT...]\n");
        return 2;
    }
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0) {
        std::perror("measure: fork");
        return 1;
    }
    if (child == 0) {
        execvp(argv[2], argv + 2);
        std::perror(argv[2]);
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) < 0) {
        std::perror("measure: wait4");
        return 1;
    }
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
    std::FILE* out = std::fopen(argv[1], "w");
    if (out == nullptr) {
        std::perror(argv[1]);
        return 1;
    }
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    std::fprintf(out, "%.6f %ld %d\n", spent.count(), usage.ru_maxrss, code);
    return std::fclose(out) == 0 ? 0 : 1;
}
