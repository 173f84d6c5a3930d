// standard_speed FILE ROUNDS: loads a pipe-system standard that often and prints the seconds of each time.
// standard_speed FILE: asks it, and prints a line for each question: name, nanoseconds, and nanoseconds of a
// walk through the records that gives the same answer; then changes, each with a question behind it,
// beside an edit that gave out the whole standard. Fails when an answer differs.
#include "base/utf.h"
#include "benchmarks/stop_watch.h"
#include "module/standard/PipeSystemCreation.h"
#include "module/standard/PipeSystemTool.h"
#include "module/standard/PipeSystemUpdates.h"
#include "module/standard/StandardEdit.h"

#include <cstdlib>
#include <functional>

namespace {

using namespace PipeSystemTool;

const PipeStandard& Standard() {
    return CStandardManager::Create().Standard();
}

// ---- the walks

const PipeNode* SystemOf(const CString& name, CString PipeBasicNode::*field) {
    for (const auto& group : Standard().m_groups)
        for (const auto& system : group->Systems())
            if (system.get()->*field == name)
                return system.get();
    return nullptr;
}

const LayerNode* LayerOf(const CString& system, const CString& type) {
    for (const auto& group : Standard().m_groups)
        if (const LayerNode* const layer = group->FindLayerNode(system, type))
            return layer;
    return nullptr;
}

const LayerNode* LayerOf(const CString& name) {
    for (const auto& group : Standard().m_groups)
        if (const LayerNode* const layer = group->FindLayerNode(name))
            return layer;
    return nullptr;
}

const LayerNode* PipeLayerOf(const CString& name, int& type) {
    for (const auto& group : Standard().m_groups)
        for (type = 0; type < 3; ++type)
            if (const LayerNode* const layer =
                    group->FindLayerNodeByLayerType(StandardIndex::pipeTypes[type], name))
                return layer;
    return nullptr;
}

CString Text(const LayerNode* layer, CString LayerNode::*field) {
    return layer != nullptr ? layer->*field : CString();
}

// ---- the questions, each about a system and one of its layers

struct Asked {
    CString system;
    CString type;
    CString layer;
};

struct Question {
    const char* name;
    std::function<CString(const Asked&)> ask;
    std::function<CString(const Asked&)> walk;
};

CString TypeText(int type) {
    static const CString texts[] = {L"none", L"0", L"1", L"2"};
    return texts[type + 1];
}

const std::vector<Question>& Questions() {
    static const std::vector<Question> questions = {
        {"GetLayerName", [](const Asked& a) { return GetLayerName(a.system, a.type); },
         [](const Asked& a) { return Text(LayerOf(a.system, a.type), &LayerNode::m_layerName); }},
        {"GetLinetypeName", [](const Asked& a) { return GetLinetypeName(a.system, a.type); },
         [](const Asked& a) { return Text(LayerOf(a.system, a.type), &LayerNode::m_linetype); }},
        {"GetPipeSystemNameByLayer", [](const Asked& a) { return GetPipeSystemNameByLayer(a.layer); },
         [](const Asked& a) { return Text(LayerOf(a.layer), &LayerNode::m_layerKey); }},
        {"the same of a type", [](const Asked& a) { return GetPipeSystemNameByLayer(a.layer, a.type); },
         [](const Asked& a) {
             for (const auto& group : Standard().m_groups)
                 if (const LayerNode* const layer = group->FindLayerNodeByLayerType(a.type, a.layer))
                     return layer->m_layerKey;
             return CString();
         }},
        {"GetPipeSystemNameByPipeLayer", [](const Asked& a) { return GetPipeSystemNameByPipeLayer(a.layer); },
         [](const Asked& a) {
             int type = -1;
             return Text(PipeLayerOf(a.layer, type), &LayerNode::m_layerKey);
         }},
        {"IsPipeLayer",
         [](const Asked& a) {
             int type = -1;
             IsPipeLayer(a.layer, &type);
             return TypeText(type);
         },
         [](const Asked& a) {
             int type = -1;
             return TypeText(PipeLayerOf(a.layer, type) != nullptr ? type : -1);
         }},
        {"GetPipeSystemGroupName", [](const Asked& a) { return GetPipeSystemGroupName(a.layer); },
         [](const Asked& a) {
             for (const auto& group : Standard().m_groups)
                 if (group->FindLayerNode(a.layer) != nullptr)
                     return group->GroupName();
             return CString();
         }},
        {"OriginSystemNameToCurrentName",
         [](const Asked& a) { return OriginSystemNameToCurrentName(a.system); },
         [](const Asked& a) {
             const PipeNode* const system = SystemOf(a.system, &PipeBasicNode::m_initialName);
             return system != nullptr ? system->m_name : a.system;
         }},
        {"GetPipeMaterial", [](const Asked& a) { return GetPipeMaterial(a.system, kIndoorMaterial); },
         [](const Asked& a) {
             const PipeNode* const system = SystemOf(a.system, &PipeBasicNode::m_name);
             return system != nullptr ? system->m_material : CString();
         }},
        {"GetLayerByPipeLayer",
         [](const Asked& a) { return GetLayerByPipeLayer(a.layer, L"管径文字", true); },
         [](const Asked& a) {
             for (const auto& group : Standard().m_groups)
                 if (const LayerNode* const own = group->FindLayerNodeByLayerType(L"管线", a.layer))
                     return Text(group->FindLayerNode(own->m_layerKey, L"管径文字"), &LayerNode::m_layerName);
             return CString();
         }},
    };
    return questions;
}

// Every layer of every system, in an order that is not theirs, and some that are not there.
std::vector<Asked> AllAsked() {
    std::vector<Asked> all;
    for (const auto& group : Standard().m_groups)
        for (const auto& system : group->Systems())
            for (const auto& layer : system->Layers())
                all.push_back({system->m_name, layer->m_layerType, layer->m_layerName});
    for (int i = 0; i < 30; ++i)
        all.push_back({L"没有", L"没有", L"没有"});
    std::vector<Asked> mixed;
    constexpr std::size_t step = 7919; // prime
    for (std::size_t i = 0, at = 0; i < all.size(); ++i, at = (at + step) % all.size())
        mixed.push_back(all[at]);
    return mixed;
}

double NanosecondsOf(const std::function<CString(const Asked&)>& ask, const std::vector<Asked>& all,
                     std::size_t count, std::size_t& sum) {
    const auto begin = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < count; ++i)
        sum += static_cast<std::size_t>(ask(all[i % all.size()]).GetLength());
    const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - begin;
    return time.count() / static_cast<double>(count);
}

bool Ask() {
    const std::vector<Asked> all = AllAsked();
    for (const Question& question : Questions()) {
        for (std::size_t i = 0; i < all.size(); i += 17)
            if (question.ask(all[i]) != question.walk(all[i])) {
                std::fprintf(stderr, "%s answers differently\n", question.name);
                return false;
            }
        std::size_t sum = 0;
        NanosecondsOf(question.ask, all, 10'000, sum);
        const double fast = NanosecondsOf(question.ask, all, 500'000, sum);
        const double slow = NanosecondsOf(question.walk, all, 500, sum);
        std::printf("%s\t%.1f\t%.1f\n", question.name, fast, slow);
        if (sum == 0)
            return false;
    }
    return true;
}

// ---- changes

// A system's layer gets a name, its system a number; asked for both, it gives them.
bool Change(const Asked& asked, int number, bool rename, bool everything) {
    const CString name = rename ? asked.layer + (number % 2 == 0 ? L"~" : L"") : asked.layer;
    {
        StandardEdit edit(CStandardManager::Create());
        if (everything)
            edit.Whole();
        PipeNode& system = *edit.System(asked.system);
        system.m_status = number;
        if (rename)
            system.FindLayerNode(asked.type, false)->m_layerName = name;
    }
    return GetPipeStatus(asked.system) == static_cast<unsigned int>(number) &&
           (!rename || GetPipeSystemNameByLayer(name, asked.type) == asked.system);
}

// The exported functions that change the standard, each with a look-up behind it.
bool CallAll(const std::vector<Asked>& all, double everything) {
    struct Call {
        const char* name;
        std::function<bool(const Asked&, LPCTSTR)> act;
    };
    const Call calls[] = {{"SetPipeStatus, asked for",
                           [](const Asked& a, LPCTSTR) {
                               SetPipeStatus(a.system, 3);
                               return true;
                           }},
                          {"SetTextStyleHeight, asked for",
                           [](const Asked&, LPCTSTR) {
                               SetTextStyleHeight(kPipeDnTextStyle,
                                                  3.5); // false, since these standards have no styles
                               return true;
                           }},
                          {"AddLayer to a system, asked for",
                           [](const Asked& a, LPCTSTR name) {
                               return AddLayer(true, name, a.system, name, 1, L"", AcDb::kLnWt030, L"");
                           }},
                          {"AddLayer to a new group, asked for", [](const Asked&, LPCTSTR name) {
                               return AddLayer(false, name, name, name, 1, L"", AcDb::kLnWt030, L"");
                           }}};
    for (const Call& call : calls) {
        constexpr int count = 200;
        const auto begin = std::chrono::steady_clock::now();
        for (int i = 0; i < count; ++i) {
            CString name;
            name.Format(L"new %d", i);
            const Asked& asked = all[static_cast<std::size_t>(i) % all.size()];
            if (!call.act(asked, name) || GetLayerName(asked.system, asked.type, false).IsEmpty())
                return false;
        }
        const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - begin;
        std::printf("%s\t%.1f\t%.1f\n", call.name, time.count() / count, everything);
    }
    return true;
}

bool ChangeAll() {
    std::vector<Asked> all = AllAsked();
    std::erase_if(all, [](const Asked& asked) { return !IsPipeSystemOfCurrentStandard(asked.system); });
    for (const bool rename : {false, true}) {
        double nanoseconds[2] = {};
        for (const bool everything : {false, true}) {
            const int count = everything ? 100 : 20'000;
            const auto begin = std::chrono::steady_clock::now();
            for (int i = 0; i < count; ++i)
                if (!Change(all[static_cast<std::size_t>(i) / 2 % all.size()], i, rename, everything))
                    return false;
            const std::chrono::duration<double, std::nano> time = std::chrono::steady_clock::now() - begin;
            nanoseconds[everything ? 1 : 0] = time.count() / count;
        }
        std::printf("%s, asked for\t%.1f\t%.1f\n", rename ? "a new layer name" : "a new status",
                    nanoseconds[0], nanoseconds[1]);
        if (!rename && !CallAll(all, nanoseconds[1]))
            return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::fprintf(stderr, "usage: standard_speed FILE [ROUNDS]\n");
        return 2;
    }
    const CString file = base::widen(argv[1]).c_str();
    CStandardManager& manager = CStandardManager::Create();
    if (argc == 3)
        return print_seconds(std::atoi(argv[2]), [&] { return manager.Load(file, false); }) ? 0 : 1;
    return manager.Load(file, false) && Ask() && ChangeAll() ? 0 : 1;
}
