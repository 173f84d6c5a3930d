// What the program was asked to do on its command line.
#pragma once

#include "base/result.h"

#include <filesystem>
#include <string>
#include <vector>

struct program_options {
    struct given_input {
        bool is_file = false; // a script file, else script text
        std::wstring text;
    };

    std::wstring drawing; // empty: a new one
    std::vector<given_input> inputs;
    std::wstring output;  // empty: none; "-": standard output
    std::wstring picture; // empty: none
    std::wstring since;   // an earlier form of the drawing, from which the picture shows changes
    int saved_as = 0;     // the version of that file; 0: the drawing's own
    std::vector<std::wstring> applications;
    int encoding = 0; // of drawings, by the number of its code page; 0: as they are
    bool module = true;
    bool read_only = false;
    bool keep_going = false;
    bool help = false;
    bool version = false;
    std::filesystem::path profile; // empty: the user's own
};

// Reads the arguments. On failure says which of them is wrong.
base::result<program_options> parse_options(const std::vector<std::wstring>& arguments);

// What --help shows.
extern const char* const usage;
