// Where answers come from: texts sent to a document, scripts, a terminal. Cuts them into answers by the rules
// of script files.
//
// A blank or a line end finishes an answer, where blanks are text only a line end. An empty answer is Enter,
// "..." holds blanks, (...) is an expression with its blanks, a line that begins with ; is a comment, ^C or
// the escape character is Escape.
#pragma once

#include "adesk.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace ed {

enum class answer_kind { text, enter, escape, end };

struct answer {
    answer_kind kind = answer_kind::end;
    std::wstring text;
    bool quoted = false;     // it stood in quotation marks
    bool expression = false; // it stood in parentheses
    bool sent = false;       // a program sent it
    bool silent = false;     // and wants nothing of it shown
};

// What ends an answer.
enum class answer_rule { word, line };

// Gives the next line without its end, or nothing at the end of the input. Where a person types, `prompt` is
// what stands in front of the cursor.
using line_source = std::function<std::optional<std::wstring>(std::wstring_view prompt)>;

class ACCORE_PORT input {
public:
    // Adds a source behind those that are there. `name` is told with errors.
    void add(std::wstring name, line_source lines, bool terminal = false);
    // Adds a whole text.
    void add_text(std::wstring name, std::wstring_view text);
    // Puts a script in front of what waits; its lines are read before the rest of what called it. False when
    // scripts are 32 deep inside each other.
    bool call_script(std::wstring name, std::wstring_view text);
    // Leaves out what is read before the next person is asked; false, and nothing happens, when no person is.
    bool return_to_person();
    // Puts a text in front of all that waits, to be read before anything else but what was sent before it.
    // Without `echo` nothing of it is shown, nor of the questions that it answers.
    void send(std::wstring_view text, bool echo = true);

    // What stands behind the answer read last on its line, which is read to its end with it.
    std::wstring take_rest_of_line();
    // The next answer. `prompt` is shown by a terminal only.
    answer next(answer_rule rule, std::wstring_view prompt);

    // Whether a person answers the next question; and whether one does so now or later, behind a script.
    bool at_terminal();
    bool has_person() const;
    // Whether nothing is to be shown of that question and its answer.
    bool next_is_silent();
    // Whether that answer was typed already, on the line of an answer before; and leaves out what is left of
    // such a line.
    bool typed_ahead() const { return !sources_.empty() && sources_.front().open; }
    void drop_typed_ahead();
    // Where the answer read last stood: "script.scr, line 12".
    std::wstring place() const;

private:
    struct source {
        std::wstring name;
        line_source lines;
        bool terminal = false;
        std::wstring line;
        std::size_t at = 0;
        bool open = false; // the line has an end that was not read yet
        int number = 0;
        bool comments = true; // lines that begin with ; are none
        bool silent = false;
    };

    bool has_sent();
    static bool fetch(source& from, std::wstring_view prompt);
    static answer cut(source& from, answer_rule rule);
    static void end_answer(source& from);

    std::deque<source> sources_;
    std::deque<source> sent_;
    std::wstring name_;
    int number_ = 0;
    bool was_sent_ = false; // the answer read last
};

} // namespace ed
