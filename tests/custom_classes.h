// The classes of the application custom_classes, as its own sources and a test see them.
#pragma once

#include "dbents.h"

#include <string>

// A pipe: an entity that knows its ends, its bore, its medium and the object that feeds it. Files itself both
// ways. Version 1; a newer one is not read.
class TestPipe : public AcDbEntity {
public:
    ACRX_DECLARE_MEMBERS(TestPipe);
    TestPipe();

    virtual AcGePoint3d start() const;
    virtual AcGePoint3d end() const;
    virtual void setEnds(const AcGePoint3d& start, const AcGePoint3d& end);
    virtual double bore() const;
    virtual void setBore(double bore);
    virtual std::wstring medium() const;
    virtual void setMedium(const std::wstring& medium);
    virtual AcDbObjectId feed() const;
    virtual void setFeed(AcDbObjectId feed);

    Acad::ErrorStatus dwgInFields(AcDbDwgFiler* filer) override;
    Acad::ErrorStatus dwgOutFields(AcDbDwgFiler* filer) const override;
    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

protected:
    Adesk::Boolean subWorldDraw(AcGiWorldDraw* draw) override;
    Acad::ErrorStatus subTransformBy(const AcGeMatrix3d& matrix) override;

private:
    AcGePoint3d m_start;
    AcGePoint3d m_end{100.0, 0.0, 0.0};
    double m_bore = 15.0;
    std::wstring m_medium = L"water";
    AcDbObjectId m_feed;
};

// A line with a note. Files itself to drawings only.
class TestNotedLine : public AcDbLine {
public:
    ACRX_DECLARE_MEMBERS(TestNotedLine);

    virtual std::wstring note() const;
    virtual void setNote(const std::wstring& note);

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

private:
    std::wstring m_note;
};

// An object with a number. Files itself in memory only.
class TestCounter : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(TestCounter);

    virtual int count() const;
    virtual void setCount(int count);

    Acad::ErrorStatus dwgInFields(AcDbDwgFiler* filer) override;
    Acad::ErrorStatus dwgOutFields(AcDbDwgFiler* filer) const override;

private:
    int m_count = 0;
};

// An object with names. A name "bad" can not be filed, and "throw" makes it throw.
class TestNames : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(TestNames);

    virtual const std::vector<std::wstring>& names() const;
    virtual void setNames(const std::vector<std::wstring>& names);

    Acad::ErrorStatus dxfInFields(AcDbDxfFiler* filer) override;
    Acad::ErrorStatus dxfOutFields(AcDbDxfFiler* filer) const override;

private:
    std::vector<std::wstring> m_names;
};
