// What the programs have in common that measure documents of markup: each gives a Document, the acts and the
// stop watch are here.
//
//   PROGRAM load|load_gbk|walk|edit FILE ROUNDS     the seconds of each round, one a line
//   PROGRAM build COUNT ROUNDS                      the same
//   PROGRAM keep FILE                               how much memory a loaded document keeps, in bytes
//
// A Document has
//   bool load(const char* path)        the file is UTF-8
//   bool load_gbk(const char* path)
//   std::size_t walk()                 looks at every element's name, text, and attributes with their values
//   std::size_t edit(int every)        goes to every element and gives each so-many-th without children a new
//                                      text; tells how many
//   std::size_t build(int count)       makes a root with so many children, and the whole as text; its size
#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iconv.h>
#include <iterator>
#include <memory>
#include <string>
#include <time.h>
#include <unistd.h>

inline std::string read_all(const char* path) {
    std::string bytes;
    if (std::FILE* const file = std::fopen(path, "rb"); file != nullptr) {
        std::fseek(file, 0, SEEK_END);
        bytes.resize(static_cast<std::size_t>(std::ftell(file)));
        std::rewind(file);
        bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
        std::fclose(file);
    }
    return bytes;
}

// The bytes of a GBK text in another encoding, `room` bytes for each of its own.
inline std::string from_gbk(std::string bytes, const char* to, std::size_t room) {
    std::string out(bytes.size() * room, '\0');
    const iconv_t handle = ::iconv_open(to, "GBK");
    char* in_at = bytes.data();
    char* out_at = out.data();
    std::size_t in_left = bytes.size();
    std::size_t out_left = out.size();
    ::iconv(handle, &in_at, &in_left, &out_at, &out_left);
    ::iconv_close(handle);
    out.resize(out.size() - out_left);
    return out;
}

// What this process has in memory, in bytes.
inline long memory_in_use() {
    long all = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * ::sysconf(_SC_PAGESIZE);
}

// What this process has used of the processor, the system's work for it too: other programs count little.
inline double processor_seconds() {
    timespec now = {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

template<class Document>
int run_acts(int argc, char** argv) {
    const std::string act = argc > 2 ? argv[1] : "";
    const char* const subject = argc > 2 ? argv[2] : "";
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 1;
    constexpr int every = 364; // a thousand texts in 20 MB
    if (act == "keep") {
        const long before = memory_in_use();
        Document document;
        const bool is_good = document.load(subject);
        std::printf("%ld\n", memory_in_use() - before);
        return is_good ? 0 : 1;
    }
    auto document = std::make_unique<Document>();
    if ((act == "walk" || act == "edit") && !document->load(subject))
        return 1;
    for (int round = 0; round < rounds; ++round) {
        if (act != "walk" && act != "edit")
            document = std::make_unique<Document>();
        const double start = processor_seconds();
        std::size_t done = 0;
        if (act == "load")
            done = document->load(subject);
        else if (act == "load_gbk")
            done = document->load_gbk(subject);
        else if (act == "walk")
            done = document->walk();
        else if (act == "edit")
            done = document->edit(every);
        else if (act == "build")
            done = document->build(std::atoi(subject));
        const double spent = processor_seconds() - start;
        if (done == 0) {
            std::fprintf(stderr, "%s: nothing came of '%s %s'\n", argv[0], act.c_str(), subject);
            return 1;
        }
        std::printf("%.7f\n", spent);
    }
    return 0;
}
