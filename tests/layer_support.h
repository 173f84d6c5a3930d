// A script on a drawing with layers, and what it changed there.
#pragma once

#include "base/utf.h"
#include "sys/code_page.h"
#include "tests/support.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace test {

using texts = std::vector<std::string>;

// What each object of a drawing holds, "CODE VALUE" in its order, by its name: a layer's own, else the
// handle. The next free handle is left out.
inline std::map<std::string, texts> objects(const std::string& drawing) {
    std::map<std::string, texts> found;
    std::istringstream in(drawing);
    std::string type, name;
    texts groups;
    for (std::string code, value; std::getline(in, code) && std::getline(in, value);) {
        code.erase(0, code.find_first_not_of(' '));
        value.erase(0, std::min(value.find_first_not_of(' '), value.size()));
        if (code == "0") {
            found[name] = std::move(groups);
            groups.clear();
            name = type = value;
        } else if ((code == "5" && type != "SECTION") || (code == "2" && type == "LAYER"))
            name = value;
        if (code != "5" || type != "SECTION")
            groups.push_back(code + " " + value);
    }
    found[name] = std::move(groups);
    return found;
}

// "NAME: VALUE" for each value that came, "NAME: -VALUE" for each that went, "NAME: gone" for an object that
// did.
inline texts changes(const std::string& before, const std::string& after) {
    const auto old_objects = objects(before);
    const auto new_objects = objects(after);
    texts found;
    const auto holds = [](const texts& groups, const std::string& group) {
        return std::find(groups.begin(), groups.end(), group) != groups.end();
    };
    for (const auto& [name, groups] : new_objects) {
        const auto old = old_objects.find(name);
        for (const std::string& group : groups)
            if (old != old_objects.end() ? !holds(old->second, group)
                                         : group.starts_with("70 ") || group.starts_with("62 "))
                found.push_back(name + ": " + group);
    }
    for (const auto& [name, groups] : old_objects) {
        const auto now = new_objects.find(name);
        if (now == new_objects.end())
            found.push_back(name + ": gone");
        else
            for (const std::string& group : groups)
                if (!holds(now->second, group))
                    found.push_back(name + ": -" + group);
    }
    return found;
}

// Picks of entities by their handles.
inline std::string picks(const texts& handles) {
    std::string script;
    for (const std::string& handle : handles)
        script += "(handent \"" + handle + "\")\n";
    return script;
}

// A drawing in UTF-8, in GBK when it is of R2000, with line ends of one character.
inline std::string read_drawing(const std::filesystem::path& file) {
    std::string bytes = read(file);
    std::erase(bytes, '\r');
    return bytes.find("AC1015") == bytes.npos ? bytes
                                              : base::narrow(sys::code_page::find(936)->decode(bytes));
}

struct layer_outcome {
    run_result ran;
    texts changed;
};

// Sessions one after the other on what was saved last, with one profile.
class Sessions {
public:
    explicit Sessions(std::string drawing) : saved(std::move(drawing)) {}

    // Runs a script, without what the host keeps for the way back.
    run_result run(const std::string& script, int status = 0) {
        const std::filesystem::path in = folder_.write("in.dxf", saved);
        const run_result ran = zefhost(
            {in.string(), "-o", (folder_ / "out.dxf").string(), "--profile", (folder_ / "profile").string()},
            "LAYERPMODE OFF\n" + script);
        EXPECT_EQ(ran.status, status) << script << ran.out << ran.err;
        if (status == 0)
            saved = read(folder_ / "out.dxf");
        return ran;
    }

    std::string saved;

protected:
    const folder folder_;
};

inline bool says(const run_result& ran, std::string_view text) {
    return ran.out.find(text) != std::string::npos;
}

// Runs a script on a drawing, without what the host keeps for the way back. It must end well.
inline layer_outcome run_on_layers(const std::filesystem::path& original, const std::string& script,
                                   texts arguments = {}) {
    const folder scratch;
    const std::string out = (scratch / "out.dxf").string();
    arguments.insert(arguments.end(), {original.string(), "-o", out});
    layer_outcome found{zefhost(arguments, "LAYERPMODE OFF\n" + script), {}};
    EXPECT_EQ(found.ran.status, 0) << found.ran.err;
    found.changed = changes(read_drawing(original), read_drawing(out));
    return found;
}

} // namespace test
