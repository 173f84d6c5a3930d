// zefhost: opens a drawing, runs commands on it, saves it.
#include "apps/zefhost/console_input.h"
#include "apps/zefhost/options.h"
#include "base/utf.h"
#include "dbmain.h"
#include "host/ap/documents.h"
#include "host/db/core/imp_database.h"
#include "host/ed/editor.h"
#include "host/ed/picture_file.h"
#include "host/rx/applications.h"
#include "host/version/saving.h"
#include "sys/file.h"
#include "sys/folders.h"
#include "sys/plain_text.h"

#include <clocale>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int wrong_usage = 2;

// What is loaded at the start, siblings before who calls them.
constexpr std::wstring_view own_applications[] = {L"zef_kernal", L"zef_pipewire", L"zef_public",
                                                  L"zef_pipeSystem", L"zef_client"};

void complain(std::wstring_view message) {
    ed::command_line::instance().error(L"zefhost: " + std::wstring(message));
}

int status_of(ed::run_status status) {
    return static_cast<int>(status);
}

bool load_applications(const program_options& options) {
    std::vector<std::wstring> wanted;
    if (options.module)
        wanted.assign(std::begin(own_applications), std::end(own_applications));
    wanted.insert(wanted.end(), options.applications.begin(), options.applications.end());
    for (const std::wstring& application : wanted)
        if (auto loaded = rx::applications::instance().load(application); !loaded) {
            complain(loaded.error());
            return false;
        }
    return true;
}

bool add_inputs(const program_options& options, std::FILE* shown) {
    ed::input& input = ed::editor::instance().input;
    for (const auto& given : options.inputs) {
        if (!given.is_file) {
            input.add_text(L"-c", given.text);
            continue;
        }
        const auto bytes = sys::read_file(sys::to_path(given.text));
        if (!bytes) {
            complain(bytes.error());
            return false;
        }
        input.add_text(given.text, sys::plain_text(bytes->view()));
    }
    if (options.inputs.empty() && input_is_terminal())
        input.add(L"standard input", terminal_lines(shown), true);
    else if (options.inputs.empty())
        input.add_text(L"standard input", piped_text());
    return true;
}

// Writes the drawing where -o says. A run that broke off writes nothing: half a job is not what was asked
// for.
void save_output(const std::wstring& output, int version) {
    ed::editor& editor = ed::editor::instance();
    if (editor.broke_off()) {
        complain(L"'" + output + L"' was not written");
        return;
    }
    if (output != L"-" || ap::documents::instance().current() == nullptr) {
        if (auto saved = ap::documents::instance().save(output, version); !saved)
            editor.fail(ed::run_status::not_saved, saved.error());
        return;
    }
    AcDbImpDatabase& drawing = ap::documents::instance().current_database()->imp();
    bool written = true;
    const auto lost = version::write_as_version(
        drawing, version != 0 ? version : drawing.drawing().version(), [&](std::string_view piece) {
            written = std::fwrite(piece.data(), 1, piece.size(), stdout) == piece.size();
            return written;
        });
    for (const std::wstring& line : lost)
        complain(line);
    if (!written || std::fflush(stdout) != 0)
        editor.fail(ed::run_status::not_saved, L"standard output could not be written");
    else
        drawing.records().mark_saved();
}

void tell_unsaved() {
    for (const AcDbDatabase* const database : ap::documents::instance().databases())
        if (const std::size_t unsaved = database->imp().records().unsaved(); unsaved != 0) {
            const std::wstring& file = database->imp().file_name;
            complain((file.empty() ? L"the new drawing" : L"'" + file + L"'") +
                     L" was changed and not saved: " + std::to_wstring(unsaved) +
                     (unsaved == 1 ? L" object" : L" objects"));
        }
}

base::result<void> draw_output(AcDbImpDatabase& drawing, const program_options& options) {
    return options.since.empty() ? ed::write_picture(drawing, options.picture)
                                 : ed::write_changes(drawing, options.since, options.picture);
}

int run(const program_options& options) {
    ed::editor& editor = ed::editor::instance();
    // With the drawing on standard output, the transcript goes where the errors go.
    std::FILE* const shown = options.output == L"-" ? stderr : stdout;
    ed::command_line::instance().set_sink([shown](std::string_view text) {
        std::fwrite(text.data(), 1, text.size(), shown);
        std::fflush(shown);
    });
    if (!options.profile.empty())
        sys::set_profile_folder(options.profile);
    if (auto prepared = sys::prepare_profile(sys::executable_folder() / ".." / "share"); !prepared)
        complain(prepared.error());
    AcDbImpDatabase::how_to_read() = {options.encoding, [](const std::wstring& line) {
                                          ed::command_line::instance().fresh_line();
                                          ed::command_line::instance().error(line);
                                      }};
    editor.keep_going = options.keep_going;
    editor.saves_at_end = !options.output.empty();
    if (!add_inputs(options, shown))
        return wrong_usage;
    if (!load_applications(options))
        return status_of(ed::run_status::not_loaded);
    if (auto opened = ap::documents::instance().open(options.drawing, options.read_only); !opened) {
        complain(opened.error());
        return status_of(ed::run_status::unreadable);
    }
    editor.run();
    ed::command_line::instance().fresh_line();
    if (!options.output.empty())
        save_output(options.output, options.saved_as);
    if (!options.picture.empty() && !editor.broke_off() && ap::documents::instance().current() != nullptr)
        if (auto drawn = draw_output(ap::documents::instance().current_database()->imp(), options); !drawn)
            editor.fail(ed::run_status::not_saved, drawn.error());
    tell_unsaved();
    return status_of(ed::status_of_run());
}

} // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_CTYPE, "C.UTF-8"); // the line editor counts columns by it
    ed::command_line::instance().set_error_sink([](std::string_view text) {
        std::fflush(stdout);
        std::fwrite(text.data(), 1, text.size(), stderr);
    });
    std::vector<std::wstring> arguments;
    for (int i = 1; i < argc; ++i)
        arguments.push_back(base::widen(argv[i]));
    const auto options = parse_options(arguments);
    if (!options) {
        complain(options.error() + L"; zefhost --help tells the options");
        return wrong_usage;
    }
    if (options->help || options->version) {
        std::fputs(options->help ? usage : "zefhost " ZEF_VERSION "\n", stdout);
        return 0;
    }
    const int status = run(*options);
    ap::documents::instance().close_all();
    rx::applications::instance().unload_all();
    return status;
}
