// peer_dime DRAWING: opens a drawing with dime, which keeps all of it in memory, and prints what it found.
#include <dime/Input.h>
#include <dime/Model.h>
#include <dime/sections/EntitiesSection.h>

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: peer_dime DRAWING\n");
        return 2;
    }
    dimeInput input;
    if (!input.setFile(argv[1])) {
        std::fprintf(stderr, "peer_dime: cannot open %s\n", argv[1]);
        return 3;
    }
    dimeModel model;
    if (!model.read(&input)) {
        std::fprintf(stderr, "peer_dime: cannot read %s, stopped at line %d\n", argv[1],
                     input.getFilePosition());
        return 3;
    }
    auto* entities = static_cast<dimeEntitiesSection*>(model.findSection("ENTITIES"));
    std::printf("%d entities\n", entities == nullptr ? 0 : entities->getNumEntities());
    return 0;
}
