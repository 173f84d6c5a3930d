#include "dbents.h"
#include "host/db/core/imp_object.h"

ACRX_DXF_DEFINE_MEMBERS(AcDbBlockBegin, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, BLOCK,
                        "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbBlockEnd, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, ENDBLK,
                        "ObjectDBX Classes")
ACRX_DXF_DEFINE_MEMBERS(AcDbSequenceEnd, AcDbEntity, AcDb::kDHL_CURRENT, AcDb::kMReleaseCurrent, 0, SEQEND,
                        "ObjectDBX Classes")

AcDbBlockBegin::AcDbBlockBegin() {
    imp().begin_as("0\nBLOCK\n100\nAcDbEntity\n8\n0\n100\nAcDbBlockBegin\n2\n\n70\n0\n"
                   "10\n0.0\n20\n0.0\n30\n0.0\n3\n\n1\n\n");
}
AcDbBlockBegin::~AcDbBlockBegin() = default;

AcDbBlockEnd::AcDbBlockEnd() {
    imp().begin_as("0\nENDBLK\n100\nAcDbEntity\n8\n0\n100\nAcDbBlockEnd\n");
}
AcDbBlockEnd::~AcDbBlockEnd() = default;

AcDbSequenceEnd::AcDbSequenceEnd() {
    imp().begin_as("0\nSEQEND\n100\nAcDbEntity\n8\n0\n");
}
AcDbSequenceEnd::~AcDbSequenceEnd() = default;
