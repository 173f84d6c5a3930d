// The command configuration: settings of commands and drawing defaults in named sections of an XML file, for
// all modules of the add-on. One file is open at a time. It is changed in memory; closing it after a change
// writes it.
//
//     <vantrel><kol>                                the root path
//       <cmd name="DWG默认数据">                    a section
//         <item name="管长精度">1</item>            an item: a text,
//         <item name="比例"><val>50</val><val>100</val></item>   a list of texts,
//         <item name="a"><item name="b">1</item></item>          or a holder of others: the key "a\b"
//       </cmd>
//     </kol></vantrel>
//
// Paths and keys are names with backslashes between; empty ones do not count. What is asked for and not there
// gives false and leaves the caller's variable as it was. What XML can not hold, and a key without a name, is
// refused with false and nothing is changed.
#pragma once

#include "module/frame/ModulePort.h"

#include "afxcoll.h"

#include <vector>

namespace CmdConfigTool {

struct AttNode {
    CString m_name;
    CString m_value;
};

// A text with attributes: of an item the attributes but the one that identifies it, of a list's element all.
struct ZEF_PIPESYSTEM_PORT LeafNode {
    CString m_value;
    std::vector<AttNode> m_attributes; // read: in the order of their names

    // The first attribute of that name; "" when there is none.
    CString GetAttribute(LPCTSTR name) const;
    bool HasAttribute(LPCTSTR name) const;
};

// Opens a file of the add-on's system folder; changes of one that is open are lost. False, and the content
// empty, when it is missing or no good XML; it can be built anew then, and a file that is no good XML is kept
// under its name with ".bak" behind it when it is written over. One with bytes that its encoding does not
// have is not written over. False, and no file open, for a name that leads out of the folder.
ZEF_PIPESYSTEM_PORT bool OpenConfigFile(LPCTSTR fileName);
// Writes the file in UTF-8, whole or not at all, when it was changed, and forgets file, content and root
// path. True when it was written. An item's text is not written when there are items below it.
ZEF_PIPESYSTEM_PORT bool CloseConfigFile();

// Where the sections lie from now on, until the file is closed; "vantrel\kol\" at first.
ZEF_PIPESYSTEM_PORT void SetRootPath(LPCTSTR path);
// Makes what is missing of a root path. True when all of it is there. A file has one root: a path that begins
// with another name is refused.
ZEF_PIPESYSTEM_PORT bool CreateRootPath(LPCTSTR path);

// Items. `attribName` is the attribute that the key's names are looked for in, "name" in the forms without;
// sections have "name" always. What is missing of section and key is written, the root path is not made.
//
// A text or a LeafNode takes the place of a list and a list that of a text; items below an item stay.
ZEF_PIPESYSTEM_PORT bool ReadItem(LPCTSTR section, LPCTSTR key, CString& value);
ZEF_PIPESYSTEM_PORT bool ReadItem(LPCTSTR section, LPCTSTR key, CStringArray& values);
ZEF_PIPESYSTEM_PORT bool ReadItem(LPCTSTR section, LPCTSTR key, LeafNode& leaf);
ZEF_PIPESYSTEM_PORT bool ReadItem(LPCTSTR section, LPCTSTR key, std::vector<LeafNode>& leaves);
ZEF_PIPESYSTEM_PORT bool ReadItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, CString& value);
ZEF_PIPESYSTEM_PORT bool ReadItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, CStringArray& values);
ZEF_PIPESYSTEM_PORT bool ReadItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, LeafNode& leaf);
ZEF_PIPESYSTEM_PORT bool ReadItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key,
                                  std::vector<LeafNode>& leaves);
ZEF_PIPESYSTEM_PORT bool WriteItem(LPCTSTR section, LPCTSTR key, LPCTSTR value);
ZEF_PIPESYSTEM_PORT bool WriteItem(LPCTSTR section, LPCTSTR key, const CStringArray& values);
ZEF_PIPESYSTEM_PORT bool WriteItem(LPCTSTR section, LPCTSTR key, const LeafNode& leaf);
ZEF_PIPESYSTEM_PORT bool WriteItem(LPCTSTR section, LPCTSTR key, const std::vector<LeafNode>& leaves);
ZEF_PIPESYSTEM_PORT bool WriteItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, LPCTSTR value);
ZEF_PIPESYSTEM_PORT bool WriteItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key,
                                   const CStringArray& values);
ZEF_PIPESYSTEM_PORT bool WriteItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, const LeafNode& leaf);
ZEF_PIPESYSTEM_PORT bool WriteItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key,
                                   const std::vector<LeafNode>& leaves);

// One attribute of an item; the item is made when it is missing.
ZEF_PIPESYSTEM_PORT bool ReadAttribute(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, LPCTSTR name,
                                       CString& value);
ZEF_PIPESYSTEM_PORT bool WriteAttribute(LPCTSTR section, LPCTSTR attribName, LPCTSTR key, LPCTSTR name,
                                        LPCTSTR value);

// The texts of all that lies directly below an item, a list's elements too.
ZEF_PIPESYSTEM_PORT bool ReadChildItem(LPCTSTR section, LPCTSTR attribName, LPCTSTR key,
                                       CStringArray& values);

} // namespace CmdConfigTool
