// A peer; its texts are UTF-8.
#include "benchmarks/xml_acts.h"

#include <tinyxml2.h>

namespace {

std::size_t length(const char* text) {
    return text != nullptr ? std::strlen(text) : 0;
}

class Document {
public:
    bool load(const char* path) { return doc_.LoadFile(path) == tinyxml2::XML_SUCCESS; }

    bool load_gbk(const char* path) {
        const std::string utf8 = from_gbk(read_all(path), "UTF-8", 2);
        return doc_.Parse(utf8.data(), utf8.size()) == tinyxml2::XML_SUCCESS;
    }

    std::size_t walk() { return walk_level(doc_); }

    std::size_t edit(int every) {
        int passed = 0;
        return edit_level(doc_, every, passed);
    }

    std::size_t build(int count) {
        tinyxml2::XMLElement* const root = doc_.NewElement("root");
        doc_.InsertEndChild(root);
        for (int i = 0; i < count; ++i)
            root->InsertNewChildElement("LayerName")->SetText("PIPE-给水-管线");
        tinyxml2::XMLPrinter printer(nullptr, true);
        doc_.Print(&printer);
        return static_cast<std::size_t>(printer.CStrSize());
    }

private:
    static std::size_t walk_level(tinyxml2::XMLNode& parent) {
        std::size_t size = 0;
        for (auto* node = parent.FirstChildElement(); node != nullptr; node = node->NextSiblingElement()) {
            size += length(node->Name()) + length(node->GetText());
            for (auto* at = node->FirstAttribute(); at != nullptr; at = at->Next())
                size += length(at->Name()) + length(at->Value());
            size += walk_level(*node);
        }
        return size;
    }

    static std::size_t edit_level(tinyxml2::XMLNode& parent, int every, int& passed) {
        std::size_t changed = 0;
        for (auto* node = parent.FirstChildElement(); node != nullptr; node = node->NextSiblingElement()) {
            if (++passed >= every && node->FirstChildElement() == nullptr) {
                node->SetText("changed & written");
                ++changed;
                passed = 0;
            }
            changed += edit_level(*node, every, passed);
        }
        return changed;
    }

    tinyxml2::XMLDocument doc_;
};

} // namespace

int main(int argc, char** argv) {
    return run_acts<Document>(argc, argv);
}
