// The module's MarkupDoc.
#include "base/utf.h"
#include "benchmarks/xml_acts.h"
#include "module/engines/MarkupDoc.h"

namespace {

class Document {
public:
    bool load(const char* path) { return doc_.LoadFile(base::widen(path).c_str()); }
    bool load_gbk(const char* path) { return load(path); }

    std::size_t walk() {
        doc_.ResetPosition();
        return walk_level();
    }

    std::size_t edit(int every) {
        doc_.ResetPosition();
        int passed = 0;
        return edit_level(every, passed);
    }

    std::size_t build(int count) {
        doc_.AddElement(L"root");
        doc_.IntoElement();
        for (int i = 0; i < count; ++i)
            doc_.AddElement(L"LayerName", L"PIPE-给水-管线");
        return doc_.GetDocumentText().size();
    }

private:
    std::size_t walk_level() {
        std::size_t size = 0;
        while (doc_.FindElement()) {
            size += doc_.GetTagName().size() + doc_.GetElementData().size();
            for (int i = 0;; ++i) {
                const auto name = doc_.GetAttributeName(i);
                if (name.empty())
                    break;
                size += name.size() + doc_.GetAttributeValue(i).size();
            }
            doc_.IntoElement();
            size += walk_level();
            doc_.OutOfElement();
        }
        return size;
    }

    std::size_t edit_level(int every, int& passed) {
        std::size_t changed = 0;
        while (doc_.FindElement()) {
            if (++passed >= every && doc_.SetElementData(L"changed & written")) {
                ++changed;
                passed = 0;
            }
            doc_.IntoElement();
            changed += edit_level(every, passed);
            doc_.OutOfElement();
        }
        return changed;
    }

    MarkupDoc doc_;
};

} // namespace

int main(int argc, char** argv) {
    return run_acts<Document>(argc, argv);
}
