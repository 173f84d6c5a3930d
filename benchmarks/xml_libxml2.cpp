// A peer; its texts are UTF-8.
#include "benchmarks/xml_acts.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

namespace {

const xmlChar* words(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

std::size_t length(const xmlNode* texts) {
    std::size_t size = 0;
    for (; texts != nullptr; texts = texts->next)
        if (texts->type == XML_TEXT_NODE)
            size += static_cast<std::size_t>(xmlStrlen(texts->content));
    return size;
}

class Document {
public:
    Document() = default;
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;
    ~Document() { xmlFreeDoc(doc_); }

    bool load(const char* path) {
        doc_ = xmlReadFile(path, nullptr, XML_PARSE_HUGE);
        return doc_ != nullptr;
    }
    bool load_gbk(const char* path) { return load(path); }

    std::size_t walk() { return walk_level(xmlDocGetRootElement(doc_)); }

    std::size_t edit(int every) {
        int passed = 0;
        return edit_level(xmlDocGetRootElement(doc_), every, passed);
    }

    std::size_t build(int count) {
        doc_ = xmlNewDoc(words("1.0"));
        xmlNode* const root = xmlNewNode(nullptr, words("root"));
        xmlDocSetRootElement(doc_, root);
        for (int i = 0; i < count; ++i)
            xmlNewTextChild(root, nullptr, words("LayerName"), words("PIPE-给水-管线"));
        xmlChar* text = nullptr;
        int size = 0;
        xmlDocDumpMemory(doc_, &text, &size);
        xmlFree(text);
        return static_cast<std::size_t>(size);
    }

private:
    static std::size_t walk_level(const xmlNode* node) {
        std::size_t size = 0;
        for (; node != nullptr; node = node->next) {
            if (node->type != XML_ELEMENT_NODE)
                continue;
            size += static_cast<std::size_t>(xmlStrlen(node->name)) + length(node->children);
            for (const xmlAttr* at = node->properties; at != nullptr; at = at->next)
                size += static_cast<std::size_t>(xmlStrlen(at->name)) + length(at->children);
            size += walk_level(node->children);
        }
        return size;
    }

    static std::size_t edit_level(xmlNode* node, int every, int& passed) {
        std::size_t changed = 0;
        for (; node != nullptr; node = node->next) {
            if (node->type != XML_ELEMENT_NODE)
                continue;
            if (++passed >= every && xmlFirstElementChild(node) == nullptr) {
                xmlNodeSetContent(node, words("changed &amp; written"));
                ++changed;
                passed = 0;
            }
            changed += edit_level(node->children, every, passed);
        }
        return changed;
    }

    xmlDoc* doc_ = nullptr;
};

} // namespace

int main(int argc, char** argv) {
    return run_acts<Document>(argc, argv);
}
