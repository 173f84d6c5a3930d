#include "apps/zefhost/line_editor.h"

#include "base/case_fold.h"
#include "base/display_width.h"
#include "base/utf.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cwchar>
#include <histedit.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

struct line_editor::state {
    EditLine* editor = nullptr;
    HistoryW* history = nullptr;
    std::FILE* shown = nullptr;
    std::function<completions(std::wstring_view)> complete;
    std::wstring prompt;
    ending ended = ending::enter;
    std::mbstate_t decoding{};
};

namespace {

using ending = line_editor::ending;

// The key that Escape and Ctrl-C become: a control character that keyboards have no other use for.
constexpr wchar_t cancel_key = 0x1F;
constexpr wchar_t escape_key = 0x1B;
constexpr wchar_t end_key = 0x04;
// An arrow key sends its characters at once; who presses Escape sends nothing behind it.
constexpr int escape_wait_ms = 60;

std::atomic<bool> interrupted = false;
std::atomic<bool> resized = false;   // the window
std::atomic<bool> continued = false; // the program, after it was stopped
void (*tell_interrupt)() = nullptr;
bool (*interrupt_waits)() = nullptr;

void on_interrupt(int /*signal*/) {
    interrupted = true;
    if (tell_interrupt != nullptr)
        tell_interrupt();
}

void on_resize(int /*signal*/) {
    resized = true;
}

void on_continue(int /*signal*/) {
    continued = true;
}

void catch_signal(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigaction(signal, &action, nullptr);
}

std::pair<std::size_t, std::size_t> screen_size(std::FILE* shown) {
    winsize size{};
    if (ioctl(fileno(shown), TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return {80, 24};
    return {size.ws_col, size.ws_row};
}

line_editor::state& state_of(EditLine* editor) {
    void* state = nullptr;
    el_get(editor, EL_CLIENTDATA, &state);
    return *static_cast<line_editor::state*>(state);
}

wchar_t* prompt_of(EditLine* editor) {
    return state_of(editor).prompt.data();
}

// Waits for input, so that a signal which comes before the waiting ends it too. False when a signal did.
bool wait_for_input() {
    sigset_t watched;
    sigemptyset(&watched);
    sigaddset(&watched, SIGINT);
    sigaddset(&watched, SIGWINCH);
    sigaddset(&watched, SIGCONT);
    sigset_t before;
    sigprocmask(SIG_BLOCK, &watched, &before);
    pollfd input{STDIN_FILENO, POLLIN, 0};
    const bool ready = !interrupted && !resized && !continued && ppoll(&input, 1, nullptr, &before) > 0;
    sigprocmask(SIG_SETMASK, &before, nullptr);
    return ready;
}

// The row of the screen that the cursor is in, counted from the first one of the prompt, and how many rows
// prompt and line take.
std::pair<std::size_t, std::size_t> rows_of(EditLine* editor) {
    const line_editor::state& state = state_of(editor);
    const LineInfoW* const line = el_wline(editor);
    const std::size_t columns = screen_size(state.shown).first;
    const auto end_of = [&](const wchar_t* end) {
        return base::display_width(state.prompt) +
               base::display_width({line->buffer, static_cast<std::size_t>(end - line->buffer)});
    };
    return {end_of(line->cursor) / columns, end_of(line->lastchar) / columns + 1};
}

// Takes prompt and line off a screen that has another width now. Most terminals break their lines anew then;
// of those that do not, the ones that fit into one row are right too.
void erase_line(EditLine* editor) {
    std::FILE* const shown = state_of(editor).shown;
    std::fputc('\r', shown);
    if (const std::size_t row = rows_of(editor).first; row != 0)
        std::fprintf(shown, "\x1b[%zuA", row);
    std::fputs("\x1b[J", shown);
    std::fflush(shown);
}

bool more_follows() {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return poll(&input, 1, escape_wait_ms) > 0;
}

// The next character for the line editor: 1, or 0 at the end of the input.
int next_character(EditLine* editor, wchar_t* character) {
    line_editor::state& state = state_of(editor);
    for (;;) {
        if (!wait_for_input()) {
            if (interrupted.exchange(false)) {
                tcflush(STDIN_FILENO, TCIFLUSH); // what was typed ahead goes with it
                *character = cancel_key;
                return 1;
            }
            if (continued.exchange(false)) {
                el_set(editor, EL_PREP_TERM, 1);
                el_resize(editor); // it may have changed meanwhile
                el_set(editor, EL_REFRESH);
            }
            if (resized.exchange(false)) {
                erase_line(editor);
                el_resize(editor);
                el_set(editor, EL_REFRESH);
            }
            continue;
        }
        char byte = 0;
        const ssize_t got = ::read(STDIN_FILENO, &byte, 1);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0) {
            state.ended = ending::gone;
            return 0;
        }
        wchar_t decoded = 0;
        const std::size_t used = std::mbrtowc(&decoded, &byte, 1, &state.decoding);
        if (used == static_cast<std::size_t>(-2)) // more bytes are to come
            continue;
        if (used == static_cast<std::size_t>(-1)) {
            state.decoding = {};
            decoded = static_cast<wchar_t>(base::replacement_character);
        }
        if (decoded == 0) // Ctrl-D that was pressed while the terminal still gathered lines
            decoded = end_key;
        *character = decoded == escape_key && !more_follows() ? cancel_key : decoded;
        return 1;
    }
}

unsigned char cancel(EditLine* editor, int /*key*/) {
    state_of(editor).ended = ending::escape;
    return CC_NEWLINE;
}

unsigned char end_or_delete(EditLine* editor, int /*key*/) {
    const LineInfoW* const line = el_wline(editor);
    if (line->lastchar == line->buffer) {
        state_of(editor).ended = ending::end_key;
        return CC_NEWLINE;
    }
    if (line->cursor == line->lastchar)
        return CC_ERROR;
    el_cursor(editor, 1);
    el_deletestr(editor, 1);
    return CC_REFRESH;
}

// What all words begin with, case ignored, spelled as in the first of them.
std::wstring common_beginning(const std::vector<std::wstring>& words) {
    std::wstring common = words.front();
    for (const std::wstring& word : words) {
        std::size_t same = 0;
        while (same < common.size() && same < word.size() &&
               base::fold_case(common[same]) == base::fold_case(word[same]))
            ++same;
        common.resize(same);
    }
    return common;
}

void show_in_columns(std::FILE* shown, const std::vector<std::wstring>& words) {
    const std::size_t screen = screen_size(shown).first;
    std::size_t width = 0;
    for (const std::wstring& word : words)
        width = std::max(width, base::display_width(word) + 2);
    const std::size_t columns = std::max<std::size_t>(1, screen / width);
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i % columns == 0)
            std::fputc('\n', shown);
        std::fputs(base::narrow(base::padded(words[i], width)).c_str(), shown);
    }
    std::fputc('\n', shown);
}

unsigned char complete_word(EditLine* editor, int /*key*/) {
    const line_editor::state& state = state_of(editor);
    const LineInfoW* const line = el_wline(editor);
    const std::wstring before(line->buffer, line->cursor);
    const completions found = state.complete(before);
    if (found.words.empty())
        return CC_ERROR;
    const std::wstring word = before.substr(found.begin);
    const std::wstring common = common_beginning(found.words);
    if (found.words.size() == 1 || common.size() > word.size()) {
        if (!word.empty())
            el_wdeletestr(editor, static_cast<int>(word.size()));
        el_winsertstr(editor, common.c_str());
        return CC_REFRESH;
    }
    // Below all rows of the line; then the line is shown once more below the list.
    const auto [row, rows] = rows_of(editor);
    std::fputs(std::string(rows - 1 - row, '\n').c_str(), state.shown);
    show_in_columns(state.shown, found.words);
    std::fflush(state.shown);
    el_set(editor, EL_REFRESH);
    return CC_NORM;
}

} // namespace

line_editor::line_editor(std::FILE* shown, std::function<completions(std::wstring_view)> complete)
    : state_(std::make_unique<state>()) {
    state_->shown = shown;
    state_->complete = std::move(complete);
    state_->history = history_winit();
    HistEventW event;
    history_w(state_->history, &event, H_SETSIZE, remembered);
    state_->editor = el_init("zefhost", stdin, shown, shown);
    EditLine* const editor = state_->editor;
    el_set(editor, EL_CLIENTDATA, state_.get());
    el_wset(editor, EL_PROMPT, prompt_of);
    el_wset(editor, EL_EDITOR, L"emacs");
    el_wset(editor, EL_HIST, history_w, state_->history);
    el_wset(editor, EL_GETCFN, next_character);
    el_wset(editor, EL_ADDFN, L"zef-complete", L"Completes a word", complete_word);
    el_wset(editor, EL_ADDFN, L"zef-cancel", L"Ends the command", cancel);
    el_wset(editor, EL_ADDFN, L"zef-end", L"Deletes, or ends the input", end_or_delete);
    el_wset(editor, EL_BIND, L"^I", L"zef-complete", nullptr);
    el_wset(editor, EL_BIND, std::wstring(1, cancel_key).c_str(), L"zef-cancel", nullptr);
    el_wset(editor, EL_BIND, L"^C", L"zef-cancel", nullptr); // where the terminal sends no signal for it
    el_wset(editor, EL_BIND, L"^D", L"zef-end", nullptr);
    // The system's own flush at Ctrl-C would take what is being shown, too.
    el_set(editor, EL_SETTY, "-d", "+noflsh", nullptr);
    el_set(editor, EL_SETTY, "-x", "+noflsh", nullptr);
    // Letters above ASCII are letters, not keys with Meta.
    for (wchar_t letter = 0xA0; letter <= 0xFF; ++letter)
        el_wset(editor, EL_BIND, std::wstring(1, letter).c_str(), L"ed-insert", nullptr);
    catch_signal(SIGWINCH, on_resize);
    catch_signal(SIGCONT, on_continue);
}

line_editor::~line_editor() {
    el_end(state_->editor);
    history_wend(state_->history);
}

line_editor::ending line_editor::read(std::wstring_view prompt, std::wstring& line) {
    line.clear();
    if (interrupted && interrupt_waits != nullptr && !interrupt_waits())
        interrupted = false; // what ran then has ended by it
    state_->prompt = prompt;
    state_->ended = ending::enter;
    int count = 0;
    const wchar_t* const text = el_wgets(state_->editor, &count);
    if (text != nullptr && count > 0)
        line.assign(text, static_cast<std::size_t>(count));
    if (!line.empty() && line.back() == L'\n')
        line.pop_back();
    if (text == nullptr && state_->ended == ending::enter)
        state_->ended = ending::gone;
    return state_->ended;
}

void line_editor::remember(const std::wstring& line) {
    HistEventW event;
    history_w(state_->history, &event, H_ENTER, line.c_str());
}

std::pair<std::size_t, std::size_t> line_editor::size() const {
    return screen_size(state_->shown);
}

void take_over_interrupts(void (*noted)(), bool (*waits)()) {
    tell_interrupt = noted;
    interrupt_waits = waits;
    catch_signal(SIGINT, on_interrupt);
}
