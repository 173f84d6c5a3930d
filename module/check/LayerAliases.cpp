#include "module/check/LayerAliases.h"

std::vector<LayerAlias> GetUsualAliases() {
    return {
        {L"W-WSUP-COOL-PIPE,P-WATS-PIPE,P-WATE-PIPE,PIPE-CW,PIPE-GS,J-PIPE,P-J,P-J1,W-J给水管", L"给水",
         L"管线"},
        {L"W-WSUP-COOL-VPIP,P-WATS-VPIP,P-WATE-VPIP,P-J-L,W-VPIPE-J", L"给水", L"立管"},
        {L"P-HOT,PIPE-HW,PIPE-RS,PIPE-热水,RJ-PIPE,RJ1-PIPE,P-RJ", L"热给水", L"管线"},
        {L"P-RJ-L,W-VPIPE-RJ", L"热给水", L"立管"},
        {L"RH-PIPE,RH1-PIPE,P-RH", L"热回水", L"管线"},
        {L"P-RH-L,W-VPIPE-RH", L"热回水", L"立管"},
        {L"W-FRPT-HYDT-PIPE,P-HYDT,P-HYDR,PIPE-FH,PIPE-XF,P-XH,X-PIPE,P-消火栓给水管线", L"消防", L"管线"},
        {L"W-FRPT-HYDT-VPIP,P-XH-VPIPE,P-XH-L,W-VPIPE-X", L"消防", L"立管"},
        {L"W-FRPT-HYDT-EQPM", L"消防", L"设备"},
        {L"W-FRPT-SPRL-PIPE,P-SPRL,P-SPRN,ZP-PIPE,P-ZP,S-SPRL,自喷管", L"喷淋", L"管线"},
        {L"W-FRPT-SPRL-VPIP,P-ZP-L,W-VPIPE-ZP", L"喷淋", L"立管"},
        {L"W-DRAI-SEWA-PIPE,W-DRAI-DOME-PIPE,P-SEWR,P-SEWE,PIPE-SW,PIPE-WS,W-污水管", L"污水", L"管线"},
        {L"W-DRAI-SEWA-VPIP,P-W-L,W-VPIPE-W", L"污水", L"立管"},
        {L"W-DRAI-WAST-PIPE,P-WAST,PIPE-WW,F-废水,FS-PIPE", L"废水", L"管线"},
        {L"P-F-L,W-VPIPE-F", L"废水", L"立管"},
        {L"P-YF,YF-PIPE", L"压力废水", L"管线"},
        {L"W-RAIN-PIPE,P-RAIN,P-STRM,P-STOM,Y-PIPE,P-YS", L"雨水", L"管线"},
        {L"VPIPE-R,P-Y-L,W-VPIPE-Y", L"雨水", L"立管"},
        {L"P-AIRR,KN-PIPE,PIPE-CO", L"凝结水", L"管线"},
        {L"W-DRAI-VENT-PIPE,P-VENT,TQ", L"通气", L"管线"},
        {L"P-T-L,W-VPIPE-T", L"通气", L"立管"},
    };
}
