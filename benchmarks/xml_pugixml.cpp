// A peer, built with wide characters (PUGIXML_WCHAR_MODE). As it comes it drops blanks between elements and
// tells an element's first text; with ALL_TEXT it keeps them and tells all, as we do.
#include "benchmarks/xml_acts.h"

#include <cwchar>
#include <pugixml.hpp>
#include <sstream>

namespace {

class Document {
public:
    bool load(const char* path) { return bool(doc_.load_file(path, options)); }

    bool load_gbk(const char* path) {
        text_ = from_gbk(read_all(path), "WCHAR_T", sizeof(wchar_t));
        return bool(doc_.load_buffer_inplace(text_.data(), text_.size(), options, pugi::encoding_wchar));
    }

    std::size_t walk() { return walk_level(doc_); }

    std::size_t edit(int every) {
        int passed = 0;
        return edit_level(doc_, every, passed);
    }

    std::size_t build(int count) {
        pugi::xml_node root = doc_.append_child(L"root");
        for (int i = 0; i < count; ++i)
            root.append_child(L"LayerName").append_child(pugi::node_pcdata).set_value(L"PIPE-给水-管线");
        std::wostringstream out;
        doc_.save(out, L"", pugi::format_raw);
        return out.str().size();
    }

private:
#ifdef ALL_TEXT
    static constexpr unsigned options = pugi::parse_default | pugi::parse_ws_pcdata;

    static std::size_t text_of(pugi::xml_node node) {
        if (const pugi::xml_node only = node.first_child(); !only || !only.next_sibling())
            return std::wcslen(only.value());
        std::wstring text;
        for (const pugi::xml_node child : node.children())
            if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata)
                text += child.value();
        return text.size();
    }
#else
    static constexpr unsigned options = pugi::parse_default;

    static std::size_t text_of(pugi::xml_node node) {
        return std::wcslen(node.child_value());
    }
#endif

    static std::size_t walk_level(pugi::xml_node parent) {
        std::size_t size = 0;
        for (const pugi::xml_node node : parent.children()) {
            if (node.type() != pugi::node_element)
                continue;
            size += std::wcslen(node.name()) + text_of(node);
            for (const pugi::xml_attribute attribute : node.attributes())
                size += std::wcslen(attribute.name()) + std::wcslen(attribute.value());
            size += walk_level(node);
        }
        return size;
    }

    static std::size_t edit_level(pugi::xml_node parent, int every, int& passed) {
        std::size_t changed = 0;
        for (pugi::xml_node node : parent.children()) {
            if (node.type() != pugi::node_element)
                continue;
            if (++passed >= every &&
                (!node.first_child() || node.first_child().type() == pugi::node_pcdata)) {
                node.text().set(L"changed & written");
                ++changed;
                passed = 0;
            }
            changed += edit_level(node, every, passed);
        }
        return changed;
    }

    std::string text_;
    pugi::xml_document doc_;
};

} // namespace

int main(int argc, char** argv) {
    return run_acts<Document>(argc, argv);
}
