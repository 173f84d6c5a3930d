// Any bytes as each of the small text files and as answers: nothing that is read may be lost or go on for
// ever.
#include "base/utf.h"
#include "host/ed/expression.h"
#include "host/ed/input.h"
#include "host/ed/keywords.h"
#include "sys/posix/registry_text.h"

#include <cstdlib>

namespace {

void insist(bool condition) {
    if (!condition)
        std::abort();
}

void answer_all(std::wstring_view text) {
    ed::input input;
    input.add_text(L"fuzz", text);
    for (std::size_t left = 2 * text.size() + 2;; --left) {
        insist(left != 0);
        const ed::answer answer =
            input.next(left % 5 == 0 ? ed::answer_rule::line : ed::answer_rule::word, {});
        if (answer.kind == ed::answer_kind::end)
            break;
        std::wstring reason;
        if (answer.expression && !ed::parse_expression(answer.text, reason))
            insist(!reason.empty());
        static_cast<void>(ed::parse_point(answer.text));
        static_cast<void>(ed::keyword_list(text).match(answer.text));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::wstring text = base::widen(bytes);
    insist(base::narrow(text) == bytes);
    answer_all(text);
    sys::registry_text registry(bytes);
    registry.write(L"Software\\Fuzz", L"name",
                   std::wstring(text.substr(0, text.find_first_of(std::wstring(L"\0\r\n", 3)))));
    registry.write(L"Software\\Fuzz", L"number", 7u);
    const sys::registry_text again(registry.bytes());
    insist(again.read(L"software\\fuzz", L"NUMBER") == sys::registry_value(7u));
    return 0;
}
