// load_tree FILE: loads an XML file into an attributed tree.
#include "module/engines/VRbTree.h"

// The function is not exported: the program has its own.
#include "module/engines/VRbTreeXml.cpp"

#include "sys/folders.h"

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: load_tree FILE\n");
        return 2;
    }
    CVRbTree tree;
    if (!LoadTreeFromXml(sys::from_path(argv[1]).c_str(), tree))
        return 1;
    unsigned long sum = 0;
    for (const CVRbTreeItem* item = tree.GetRootItem(); item != nullptr;) {
        sum += 1 + static_cast<unsigned long>(item->GetAttribCount() + item->GetValue().GetLength());
        if (item->GetChild() != nullptr) {
            item = item->GetChild();
            continue;
        }
        while (item != nullptr && item->GetNext() == nullptr)
            item = item->GetParent();
        item = item != nullptr ? item->GetNext() : nullptr;
    }
    std::printf("%lu\n", sum);
    return 0;
}
