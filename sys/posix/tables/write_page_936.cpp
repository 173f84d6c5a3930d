// write_page_936 FILE: writes the source that holds code page 936, the one that nearly every run needs.
// Asking the system for it at each start would be a quarter of the start.
#include "sys/posix/code_page_table.h"

#include <cstdio>
#include <fstream>

namespace {

template<class Number>
void write_array(std::ofstream& out, const char* type, const char* name, const std::vector<Number>& numbers) {
    out << "extern const " << type << ' ' << name << "[" << numbers.size() << "] = {";
    for (std::size_t i = 0; i < numbers.size(); ++i)
        out << (i % 20 == 0 ? "\n    " : " ") << static_cast<unsigned>(numbers[i]) << ',';
    out << "\n};\n";
}

} // namespace

int main(int argc, char** argv) {
    const auto table = sys::ask_for_code_page(936);
    if (argc != 2 || !table) {
        std::fputs("write_page_936: the system does not know the code page 936 (its package of iconv modules "
                   "is missing)\n",
                   stderr);
        return 1;
    }
    std::ofstream out(argv[1]);
    out << "// Written by sys/posix/tables/write_page_936.cpp.\n#include "
           "\"sys/posix/page_936.h\"\n\nnamespace sys {\n\n";
    write_array(out, "char16_t", "page_936_characters", table->characters);
    write_array(out, "std::uint16_t", "page_936_codes", table->codes);
    out << "\n} // namespace sys\n";
    out.close();
    return out ? 0 : 1;
}
