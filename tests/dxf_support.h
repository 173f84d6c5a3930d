// What tests of drawing files share: small drawings as text, and what a drawing writes.
#pragma once

#include "base/utf.h"
#include "host/dxf/drawing.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>

namespace test {

// The drawing of some bytes; null, and a failed test, when they are refused.
inline std::unique_ptr<dxf::drawing> opened(std::string bytes) {
    auto drawing = dxf::drawing::from_bytes(std::move(bytes));
    EXPECT_TRUE(drawing) << (drawing ? "" : base::narrow(drawing.error()));
    return drawing ? std::move(*drawing) : nullptr;
}

inline std::string written(const dxf::drawing& drawing) {
    std::string bytes;
    drawing.write([&](std::string_view piece) {
        bytes += piece;
        return true;
    });
    return bytes;
}

// "0 LINE|8 WALL" as the lines of a file: codes as they stand, LF.
inline std::string groups(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        const std::size_t bar = std::min(text.find('|'), text.size());
        std::string group(text.substr(0, bar));
        text.remove_prefix(std::min(bar + 1, text.size()));
        group[group.find(' ')] = '\n';
        bytes += group + "\n";
    }
    return bytes;
}

// A drawing of R12 that has nothing but these entities.
inline std::string with_entities(std::string_view entities) {
    return groups("0 SECTION|2 ENTITIES|" + std::string(entities) + "|0 ENDSEC|0 EOF");
}

// All messages of how a drawing was read, each with a line end.
inline std::string messages(const dxf::drawing& drawing) {
    std::string all;
    for (const std::wstring& message : drawing.messages())
        all += base::narrow(message) + "\n";
    return all;
}

} // namespace test
