#include "tests/terminal.h"

#include <cctype>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

namespace {

constexpr int patience_ms = 60000; // a loaded machine is slow; a test that is right never waits so long

} // namespace

terminal::terminal(const std::vector<std::string>& arguments, const std::string& profile) {
    winsize size{};
    size.ws_row = 50;
    size.ws_col = 200;
    std::vector<std::string> words = {ZEF_BINARY_FOLDER "/zefhost", "--profile", profile};
    words.insert(words.end(), arguments.begin(), arguments.end());
    program_ = forkpty(&window_, nullptr, nullptr, &size);
    if (program_ != 0)
        return;
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    setenv("TERM", "vt100", 1);
    execv(argv[0], argv.data());
    _exit(127);
}

terminal::~terminal() {
    hang_up();
    if (program_ > 0) {
        kill(program_, SIGKILL);
        waitpid(program_, nullptr, 0);
    }
}

void terminal::hang_up() {
    if (window_ >= 0)
        close(window_);
    window_ = -1;
}

void terminal::resize(std::size_t columns, std::size_t rows) {
    winsize size{};
    size.ws_row = static_cast<unsigned short>(rows);
    size.ws_col = static_cast<unsigned short>(columns);
    ioctl(window_, TIOCSWINSZ, &size);
    screen_.resize(columns, rows);
}

void terminal::send_signal(int number) {
    kill(program_, number);
}

void terminal::type(std::string_view keys) {
    while (!keys.empty()) {
        const ssize_t written = write(window_, keys.data(), keys.size());
        if (written <= 0)
            return;
        keys.remove_prefix(static_cast<std::size_t>(written));
    }
}

bool terminal::read_more() {
    pollfd window{window_, POLLIN, 0};
    char bytes[4096];
    if (window_ < 0 || poll(&window, 1, patience_ms) <= 0)
        return false;
    const ssize_t got = read(window_, bytes, sizeof bytes);
    for (ssize_t i = 0; i < got; ++i) {
        const char c = bytes[i];
        screen_.take(c);
        if (c == '\x1b')
            in_sequence_ = true;
        else if (in_sequence_)
            in_sequence_ = c == '[' || c == '?' || c == ';' || (c >= '0' && c <= '9');
        else if (c != '\r')
            shown_ += c;
    }
    return got > 0;
}

bool terminal::shows(std::string_view text) {
    for (;;) {
        if (const std::size_t at = shown_.find(text, seen_); at != shown_.npos) {
            seen_ = at + text.size();
            return true;
        }
        if (!read_more()) {
            std::cerr << "The screen does not show '" << text << "' but:\n" << shown_.substr(seen_) << "\n";
            return false;
        }
    }
}

int terminal::ends() {
    while (read_more()) {
    }
    int status = 0;
    if (waitpid(program_, &status, 0) != program_)
        return -1;
    program_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace test
