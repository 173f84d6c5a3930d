#include "siblings/zef_pipewire/TDefaultCfg.h"

#include "siblings/zef_pipewire/TDbPsConfig.h"

#include <map>

namespace {

std::map<int, bool> flags = {{1, false}, {2, false}, {3, false}, {4, true},
                             {5, true},  {6, true},  {7, false}, {8, false}};
std::map<int, int> integers = {{0, 0}, {1, 1}, {2, 2}, {3, 0}, {4, 0}};
std::map<int, double> reals = {{1, 1.0}, {2, 2.0}, {3, 3.0}, {4, 500.0}, {5, 500.0}};

template<class T>
bool Set(std::map<int, T>& defaults, bool fits, int index, T value) {
    const auto found = defaults.find(index);
    if (!fits || found == defaults.end())
        return false;
    found->second = value;
    return true;
}

template<class T>
bool Get(const std::map<int, T>& defaults, bool fits, int index, T& value) {
    const auto found = defaults.find(index);
    if (!fits || found == defaults.end())
        return false;
    value = found->second;
    return true;
}

TPsLook LookOf(AcDbDatabase* database) {
    return DocGetSettings(database).m_look;
}

} // namespace

bool TDefaultCfg::SetDefaultValue(Kind kind, int index, bool value) {
    return Set(flags, kind == kBoolean, index, value);
}

bool TDefaultCfg::SetDefaultValue(Kind kind, int index, int value) {
    return Set(integers, kind == kInteger, index, value);
}

bool TDefaultCfg::SetDefaultValue(Kind kind, int index, double value) {
    return Set(reals, kind == kReal, index, value);
}

bool TDefaultCfg::GetDefaultValue(Kind kind, int index, bool& value) {
    return Get(flags, kind == kBoolean, index, value);
}

bool TDefaultCfg::GetDefaultValue(Kind kind, int index, int& value) {
    return Get(integers, kind == kInteger, index, value);
}

bool TDefaultCfg::GetDefaultValue(Kind kind, int index, double& value) {
    return Get(reals, kind == kReal, index, value);
}

bool IsPsLineWeight(AcDbDatabase* database) {
    return LookOf(database).m_isLineWeight.value_or(flags.at(2));
}

double GetPsBreakWidth(AcDbDatabase* database) {
    return LookOf(database).m_breakWidth.value_or(reals.at(2));
}

double GetPsPipeTextDis(AcDbDatabase* database) {
    return LookOf(database).m_textGap.value_or(reals.at(1));
}

int GetElbowType(AcDbDatabase* database) {
    return LookOf(database).m_elbowType.value_or(integers.at(0));
}
