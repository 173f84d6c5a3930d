// peer_pugixml_tree FILE: loads a file with pugixml and makes of it what a program that wants to keep and
// change it makes without further thought: nodes that own their children, wide texts, attributes sorted by
// name. With ROUNDS it does so that often and prints the seconds of each.
#include <pugixml.hpp>

#include "benchmarks/stop_watch.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

struct node {
    std::wstring name;
    std::wstring value;
    std::map<std::wstring, std::wstring> attributes;
    std::vector<std::unique_ptr<node>> children;
    node* parent = nullptr;
};

#ifdef PUGIXML_WCHAR_MODE
std::wstring wide(const wchar_t* text) {
    return text;
}
#else
std::wstring wide(const char* text) {
    return pugi::as_wide(text);
}
#endif

std::unique_ptr<node> built(pugi::xml_node from, node* parent) {
    auto made = std::make_unique<node>();
    made->name = wide(from.name());
    made->value = wide(from.text().get());
    made->parent = parent;
    for (const pugi::xml_attribute attribute : from.attributes())
        made->attributes[wide(attribute.name())] = wide(attribute.value());
    for (const pugi::xml_node child : from.children()) {
        if (child.type() == pugi::node_element)
            made->children.push_back(built(child, made.get()));
    }
    return made;
}

std::unique_ptr<node> loaded(const char* path) {
    pugi::xml_document document;
    return document.load_file(path) ? built(document.document_element(), nullptr) : nullptr;
}

unsigned long count(const node& from) {
    unsigned long sum = 1 + from.attributes.size() + from.value.size();
    for (const auto& child : from.children)
        sum += count(*child);
    return sum;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 3)
        return print_seconds(std::atoi(argv[2]), [&] { return loaded(argv[1]) != nullptr; }) ? 0 : 1;
    if (argc != 2) {
        std::fprintf(stderr, "usage: peer_pugixml_tree FILE [ROUNDS]\n");
        return 2;
    }
    const auto root = loaded(argv[1]);
    if (!root)
        return 1;
    std::printf("%lu\n", count(*root));
    return 0;
}
