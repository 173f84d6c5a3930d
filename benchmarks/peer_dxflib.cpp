// peer_dxflib DRAWING: reads a drawing with dxflib, which tells each entity to a listener and keeps nothing.
// The listener here counts what it is told, so this is the least that a program on dxflib can spend.
#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <cstdio>

namespace {

class counter : public DL_CreationAdapter {
public:
    void addPoint(const DL_PointData&) override { ++entities; }
    void addLine(const DL_LineData&) override { ++entities; }
    void addArc(const DL_ArcData&) override { ++entities; }
    void addCircle(const DL_CircleData&) override { ++entities; }
    void addEllipse(const DL_EllipseData&) override { ++entities; }
    void addPolyline(const DL_PolylineData&) override { ++entities; }
    void addSpline(const DL_SplineData&) override { ++entities; }
    void addInsert(const DL_InsertData&) override { ++entities; }
    void addMText(const DL_MTextData&) override { ++entities; }
    void addText(const DL_TextData&) override { ++entities; }

    long entities = 0;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: peer_dxflib DRAWING\n");
        return 2;
    }
    counter counted;
    DL_Dxf reader;
    if (!reader.in(argv[1], &counted)) {
        std::fprintf(stderr, "peer_dxflib: cannot read %s\n", argv[1]);
        return 3;
    }
    std::printf("%ld entities\n", counted.entities);
    return 0;
}
