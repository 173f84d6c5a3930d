#include "tests/terminal.h"

#include <cctype>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <poll.h>
#include <pty.h>
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
    program_ = forkpty(&screen_, nullptr, nullptr, &size);
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
    if (screen_ >= 0)
        close(screen_);
    screen_ = -1;
}

void terminal::type(std::string_view keys) {
    while (!keys.empty()) {
        const ssize_t written = write(screen_, keys.data(), keys.size());
        if (written <= 0)
            return;
        keys.remove_prefix(static_cast<std::size_t>(written));
    }
}

bool terminal::read_more() {
    pollfd screen{screen_, POLLIN, 0};
    char bytes[4096];
    if (screen_ < 0 || poll(&screen, 1, patience_ms) <= 0)
        return false;
    const ssize_t got = read(screen_, bytes, sizeof bytes);
    for (ssize_t i = 0; i < got; ++i) {
        const char c = bytes[i];
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
