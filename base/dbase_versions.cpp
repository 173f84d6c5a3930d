#include "base/dbase_table.h"

#include <algorithm>
#include <iterator>

// What the first bytes of a dBASE table's header say.
namespace base {

namespace {

constexpr std::size_t header_size = 32; // before the fields

// The versions of the header's first byte.
struct version_row {
    unsigned char version;
    dbase_memo_form form;
};

constexpr version_row versions[] = {
    {0x03, dbase_memo_form::none},   // dBASE III and IV, FoxPro
    {0x04, dbase_memo_form::none},   // dBASE IV
    {0x30, dbase_memo_form::foxpro}, // Visual FoxPro, with memos or without
    {0x31, dbase_memo_form::foxpro}, // the same, with counters
    {0x32, dbase_memo_form::foxpro}, // the same, with texts of varying length
    {0x43, dbase_memo_form::none},   // dBASE IV, SQL table
    {0x63, dbase_memo_form::none},   // dBASE IV, SQL system table
    {0x83, dbase_memo_form::dbase3}, // dBASE III
    {0x8B, dbase_memo_form::dbase4}, // dBASE IV
    {0xCB, dbase_memo_form::dbase4}, // dBASE IV, SQL table
    {0xF5, dbase_memo_form::foxpro}, // FoxPro 2
};

// The language drivers of byte 29, as dBASE IV's and Visual FoxPro's tables of code pages list them. Pages
// that Windows has no number for, and 0x57 "whatever this machine's is", are left out.
struct language_row {
    unsigned char driver;
    int page;
};

constexpr language_row languages[] = {
    {0x01, 437},   {0x02, 850},   {0x03, 1252},  {0x04, 10000}, {0x08, 865},  {0x09, 437},  {0x0A, 850},
    {0x0B, 437},   {0x0D, 437},   {0x0E, 850},   {0x0F, 437},   {0x10, 850},  {0x11, 437},  {0x12, 850},
    {0x13, 932},   {0x14, 850},   {0x15, 437},   {0x16, 850},   {0x17, 865},  {0x18, 437},  {0x19, 437},
    {0x1A, 850},   {0x1B, 437},   {0x1C, 863},   {0x1D, 850},   {0x1F, 852},  {0x22, 852},  {0x23, 852},
    {0x24, 860},   {0x25, 850},   {0x26, 866},   {0x37, 850},   {0x40, 852},  {0x4D, 936},  {0x4E, 949},
    {0x4F, 950},   {0x50, 874},   {0x58, 1252},  {0x59, 1252},  {0x64, 852},  {0x65, 866},  {0x66, 865},
    {0x67, 861},   {0x6A, 737},   {0x6B, 857},   {0x6C, 863},   {0x78, 950},  {0x79, 949},  {0x7A, 936},
    {0x7B, 932},   {0x7C, 874},   {0x7D, 1255},  {0x7E, 1256},  {0x86, 737},  {0x87, 852},  {0x88, 857},
    {0x96, 10007}, {0x97, 10029}, {0x98, 10006}, {0xC8, 1250},  {0xC9, 1251}, {0xCA, 1254}, {0xCB, 1253},
    {0xCC, 1257},
};

const version_row* find_version(std::string_view table) {
    const auto* const found =
        std::find_if(std::begin(versions), std::end(versions), [&](const version_row& row) {
            return !table.empty() && row.version == static_cast<unsigned char>(table[0]);
        });
    return found != std::end(versions) ? found : nullptr;
}

} // namespace

bool is_dbase_version(std::string_view table) {
    return find_version(table) != nullptr;
}

dbase_memo_form memo_form_of_dbase(std::string_view table) {
    const version_row* const row = find_version(table);
    return row != nullptr ? row->form : dbase_memo_form::none;
}

int code_page_of_dbase(std::string_view table) {
    if (table.size() < header_size)
        return 0;
    const auto driver = static_cast<unsigned char>(table[29]);
    for (const language_row& row : languages) {
        if (row.driver == driver)
            return row.page;
    }
    return 0;
}

} // namespace base
