// Lines that a person types at a terminal: editing, history, completion, Escape and Ctrl-C.
#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What a beginning can be completed to.
struct completions {
    std::size_t begin = 0; // where in the line the word begins that they complete
    std::vector<std::wstring> words;
};

class line_editor {
public:
    // Reads from standard input and shows the line on `shown`. `complete` gives, for the text in front of the
    // cursor, what its last word can become.
    line_editor(std::FILE* shown, std::function<completions(std::wstring_view)> complete);
    ~line_editor();
    line_editor(const line_editor&) = delete;
    line_editor& operator=(const line_editor&) = delete;

    // How a line ended: with Enter; with Escape or Ctrl-C; with Ctrl-D where nothing was typed; or the
    // terminal is gone.
    enum class ending { enter, escape, end_key, gone };
    // Shows the prompt and reads a line.
    ending read(std::wstring_view prompt, std::wstring& line);

    // Puts a line behind those that the arrow keys bring back.
    void remember(const std::wstring& line);

    // The columns and rows of the screen.
    std::pair<std::size_t, std::size_t> size() const;

    // How many lines they bring back at most.
    static constexpr int remembered = 500;

    struct state; // inside

private:
    std::unique_ptr<state> state_;
};

// From now on Ctrl-C ends no more than the command under way: `noted` is called by the signal, and the line
// that is read then, or next, ends with an Escape; the next one only when `waits` says that nobody has looked
// at it meanwhile.
void take_over_interrupts(void (*noted)(), bool (*waits)());
