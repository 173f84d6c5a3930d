// A dictionary file: values under keys, keys in sections, as options travel from one machine to another.
//
//     ; a comment, or #
//     [section]
//     key=value
//
// The file is UTF-8, UTF-16 with its mark, or in the page that Windows writes texts in, and stays what it is.
// A section's name is what stands between its brackets, a key what stands in front of the first "=", a value
// what stands behind it; blanks around keys and values do not count. Names are told apart by case. Of several
// sections or keys of one name the first one counts. Whatever is not set anew keeps its bytes and its place:
// comments, blank lines, lines that are none of these, line ends. New lines end as the file's first line
// does, in a new file with carriage return and line feed.
#pragma once

#include "afx.h"
#include "siblings/zef_kernal/KernalPort.h"
#include "sys/plain_text.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

// One section. Owned by its dictionary.
class ZEF_KERNAL_PORT TWDictSection {
public:
    // False, and the target as it was, when there is no such key; a number also when the text is none, or no
    // whole one of 32 bits.
    bool GetValue(LPCTSTR key, int& value) const;
    bool GetValue(LPCTSTR key, double& value) const;
    bool GetValue(LPCTSTR key, CString& value) const;

    // Change the value in place, or add the key behind the section's last one. Reals get as many digits as
    // give them back. False, and nothing changed, when the file cannot hold it: a key that is empty, is in
    // blanks, has a "=" or begins like a comment or a section, and line ends or what is no character.
    bool SetValue(LPCTSTR key, int value);
    bool SetValue(LPCTSTR key, double value);
    bool SetValue(LPCTSTR key, LPCTSTR value);

private:
    friend class TWDict;
    TWDictSection() = default;

    // The number of the key's line; that of lines when there is none.
    std::size_t Find(std::string_view key) const;
    bool Set(std::string_view key, std::string_view value);

    std::string m_name;
    std::string m_lineEnd;
    std::vector<std::string> m_lines; // with their ends; the first one is the section's header
};

class ZEF_KERNAL_PORT TWDict {
public:
    // Empty.
    TWDict();
    ~TWDict();
    TWDict(const TWDict&) = delete;
    TWDict& operator=(const TWDict&) = delete;

    // Takes the file's content in place of what was there, and with it the sections handed out. False, and
    // nothing changed, when the file cannot be read or has bytes that are no characters.
    bool ReadFile(LPCTSTR path);
    // Writes the file whole or not at all, in the encoding of the file that was read; false when that fails,
    // also for characters that the encoding lacks.
    bool WriteFile(LPCTSTR path) const;

    // The section of that name, added at the end when there is none; null when the file cannot hold the name,
    // which has a line end. Owned by the dictionary.
    TWDictSection* FindOrAddDict(LPCTSTR sectionName);

private:
    TWDictSection& Append(std::string name);

    sys::text_form m_form;
    std::string m_lineEnd = "\r\n";
    // In UTF-8. The first one is what stands in front of all headers.
    std::vector<std::unique_ptr<TWDictSection>> m_sections;
};
