#include "clients/Questions.h"

#include "acedads.h"

bool AskYesNo(LPCTSTR prompt, bool& answer) {
    CString whole;
    whole.Format(L"\n%s[是(Y)/否(N)]<%s>:", prompt, answer ? L"是" : L"否");
    ACHAR keyword[2] = {answer ? L'Y' : L'N', 0};
    acedInitGet(0, L"Y N");
    const int given = acedGetKword(whole, keyword);
    if (given != RTNORM && given != RTNONE)
        return false;
    answer = keyword[0] == L'Y';
    return true;
}

bool AskForElevation(LPCTSTR prompt, double& elevation) {
    CString whole;
    whole.Format(L"\n%s(m)<%.3f>:", prompt, elevation);
    acedInitGet(0, nullptr);
    const int given = acedGetReal(whole, &elevation);
    return given == RTNORM || given == RTNONE;
}
