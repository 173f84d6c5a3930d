// Filers over the groups of objects: what drawing files are read and written by.
#pragma once

#include "dbfiler.h"
#include "host/db/core/imp_object.h"

#include <list>
#include <span>
#include <string>
#include <vector>

namespace db {

// Gives the groups of an object one by one.
class group_input : public AcDbDxfFiler {
public:
    // Both must outlive it.
    group_input(const AcDbImpObject& object, std::span<const dxf::group> groups)
        : object_(object), groups_(groups) {}

    int rewindFiler() override;
    Acad::ErrorStatus filerStatus() const override { return m_status; }
    void resetFilerStatus() override { m_status = Acad::eOk; }
    AcDb::FilerType filerType() const override { return AcDb::kFileFiler; }
    AcDbDatabase* database() const override;
    Acad::ErrorStatus dwgVersion(AcDb::AcDbDwgVersion& version,
                                 AcDb::MaintenanceReleaseVersion& maintenance) const override;
    Acad::ErrorStatus readResBuf(resbuf* value) override;
    void pushBackItem() override { at_ = last_; }
    bool atSubclassData(const ACHAR* name) override;
    bool atEOF() override { return at_ == groups_.size(); }
    bool atEndOfObject() override { return atEOF() || atExtendedData(); }
    bool atExtendedData() override { return !atEOF() && groups_[at_].code >= 1000; }
    Acad::ErrorStatus writeResBuf(const resbuf& value) override;

    // Goes on with this group.
    void go_to(std::size_t at) { at_ = last_ = at; }

private:
    const AcDbImpObject& object_;
    std::span<const dxf::group> groups_;
    std::size_t at_ = 0;
    std::size_t last_ = 0;
    std::list<std::wstring> texts_; // on which programs look
    std::list<std::string> bytes_;
};

// Takes groups, their texts in the encoding of the object's drawing.
class group_output : public AcDbDxfFiler {
public:
    explicit group_output(const AcDbImpObject& object) : object_(object) {}
    // A number that says what the object's group in its place says, from this group on, is written as it
    // stands there.
    group_output(const AcDbImpObject& object, std::size_t first)
        : object_(object), first_(first), has_place_(true) {
        groups_.reserve(object.groups().groups().size() - first + 1);
    }

    int rewindFiler() override;
    Acad::ErrorStatus filerStatus() const override { return m_status; }
    void resetFilerStatus() override { m_status = Acad::eOk; }
    AcDb::FilerType filerType() const override { return AcDb::kFileFiler; }
    AcDbDatabase* database() const override;
    Acad::ErrorStatus dwgVersion(AcDb::AcDbDwgVersion& version,
                                 AcDb::MaintenanceReleaseVersion& maintenance) const override;
    Acad::ErrorStatus readResBuf(resbuf* value) override;
    void pushBackItem() override {}
    bool atSubclassData(const ACHAR*) override { return false; }
    bool atEOF() override { return true; }
    bool atEndOfObject() override { return true; }
    bool atExtendedData() override { return false; }
    Acad::ErrorStatus writeResBuf(const resbuf& value) override;

    const std::vector<dxf::group_list::fresh_group>& groups() const& { return groups_; }
    std::vector<dxf::group_list::fresh_group> groups() && { return std::move(groups_); }

protected:
    Acad::ErrorStatus writeReals(AcDb::DxfCode code, std::initializer_list<double> values,
                                 int precision) override;

private:
    std::string real_as_it_stands(int code, double value) const;

    const AcDbImpObject& object_;
    std::size_t first_ = 0;
    bool has_place_ = false;
    std::vector<dxf::group_list::fresh_group> groups_;
};

} // namespace db
