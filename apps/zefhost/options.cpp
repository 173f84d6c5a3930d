#include "apps/zefhost/options.h"

#include "base/utf.h"
#include "host/ap/file_name.h"
#include "host/dxf/encoding_guess.h"
#include "host/picture/picture.h"
#include "host/version/saving.h"
#include "sys/folders.h"

const char* const usage =
    R"(zefhost [DRAWING] [-s SCRIPT]... [-c TEXT]... [-o OUT [--as VERSION]]
        [--picture FILE [--since OLD]] [--load APP]... [--no-module] [--profile DIR] [--encoding NAME] [--readonly] [--keep-going]
zefhost --version | --help

DRAWING        a DXF file, ASCII or binary; without one, a new drawing
-s SCRIPT      answers from a script file, in the order given
-c TEXT        answers from a text, in which \n ends a line and \\ is a backslash
-o OUT         saves the current drawing as OUT at the end, "-" to standard output
--as VERSION   in the form of 2018, 2013, 2010, 2007, 2004, 2000 or R12; what that form lacks is told
--load APP     loads a further application
--picture FILE  at the end draws the current tab as a picture: FILE.png, .svg or .pdf (PICTURE asks for more)
--since OLD    in the picture what went since the drawing OLD is red, what came green, what changed blue
--no-module    without the pipe-system module and its siblings
--profile DIR  the user's folder (else $ZEF_PROFILE, else below the configuration folder)
--encoding NAME  how the text of drawings is read, whatever they say: gbk, big5, shift-jis, euc-kr, utf-8, or
               a code page by number (1251)
--readonly     the drawing's own file is not written
--keep-going   a refused answer or a failed command does not end the run

Without -s and -c answers come from standard input.

Exit status: 0 well; 1 something was found; 2 wrong usage; 3 the drawing could not be read;
4 an unknown command, a refused answer, a failed command; 5 the input ended inside a command;
6 saving failed; 7 an application could not be loaded.
)";

namespace {

// "\n" ends a line, "\\" is a backslash; anything else stands for itself.
std::wstring script_text(std::wstring_view argument) {
    std::wstring text;
    for (std::size_t i = 0; i < argument.size(); ++i) {
        const wchar_t next = i + 1 < argument.size() ? argument[i + 1] : L' ';
        if (argument[i] == L'\\' && (next == L'n' || next == L'\\')) {
            text += next == L'n' ? L'\n' : L'\\';
            ++i;
        } else {
            text += argument[i];
        }
    }
    return text;
}

// Whether the ending of -o matters: not of the drawing itself, nor of a folder or device, which is refused
// when it is to be written.
bool names_new_file(const program_options& options) {
    std::error_code ignored;
    const auto file = sys::to_path(options.output);
    return !options.output.empty() && options.output != L"-" && options.output != options.drawing &&
           (!std::filesystem::exists(file, ignored) || std::filesystem::is_regular_file(file, ignored));
}

} // namespace

base::result<program_options> parse_options(const std::vector<std::wstring>& arguments) {
    program_options options;
    bool only_files = false; // behind "--"
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::wstring& argument = arguments[i];
        std::wstring value;
        const auto take_value = [&] {
            if (i + 1 >= arguments.size())
                return false;
            value = arguments[++i];
            return true;
        };
        const bool takes_value = argument == L"-s" || argument == L"-c" || argument == L"-o" ||
                                 argument == L"--load" || argument == L"--profile" ||
                                 argument == L"--encoding" || argument == L"--as" ||
                                 argument == L"--picture" || argument == L"--since";
        if (!only_files && takes_value && !take_value())
            return base::failure{L"option " + argument + L" wants a value"};
        if (takes_value && !only_files && value.empty() && argument != L"-c")
            return base::failure{L"option " + argument + L" has an empty value"};
        if (only_files || argument.empty() || argument.front() != L'-') {
            if (!options.drawing.empty())
                return base::failure{L"a second drawing, '" + argument + L"'"};
            if (argument.empty())
                return base::failure{L"an empty argument"};
            options.drawing = argument;
        } else if (argument == L"-s") {
            options.inputs.push_back({true, value});
        } else if (argument == L"-c") {
            options.inputs.push_back({false, script_text(value)});
        } else if (argument == L"-o") {
            options.output = value;
        } else if (argument == L"--picture") {
            options.picture = value;
            if (const auto format = picture::format_of_file(value); !format)
                return format.why().behind(L"option --picture: ");
        } else if (argument == L"--since") {
            options.since = value;
        } else if (argument == L"--load") {
            options.applications.push_back(value);
        } else if (argument == L"--profile") {
            options.profile = sys::to_path(value);
        } else if (argument == L"--encoding") {
            options.encoding = dxf::encoding_number(base::narrow(value));
            if (options.encoding == 0)
                return base::failure{L"'" + value + L"' is no encoding that is known"};
        } else if (argument == L"--as") {
            options.saved_as = version::version_by_name(value);
            if (options.saved_as == 0)
                return base::failure{L"'" + value + L"' is no version that drawings can be saved as"};
        } else if (argument == L"--no-module") {
            options.module = false;
        } else if (argument == L"--readonly") {
            options.read_only = true;
        } else if (argument == L"--keep-going") {
            options.keep_going = true;
        } else if (argument == L"--help") {
            options.help = true;
        } else if (argument == L"--version") {
            options.version = true;
        } else if (argument == L"--") {
            only_files = true;
        } else {
            return base::failure{L"unknown option " + argument};
        }
    }
    if (options.saved_as != 0 && options.output.empty())
        return base::failure{L"option --as goes with -o"};
    if (!options.since.empty() && options.picture.empty())
        return base::failure{L"option --since goes with --picture"};
    if (names_new_file(options)) {
        const auto name = ap::drawing_file_name(options.output);
        if (!name)
            return name.why().behind(L"option -o: ");
        options.output = *name;
    }
    return options;
}
