#include "host/ed/command_stack.h"

#include "base/case_fold.h"
#include "rxregsvc.h"

#include <algorithm>
#include <iterator>
#include <memory>

ACRX_NO_CONS_DEFINE_MEMBERS(AcEdCommand, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcEdCommandStack, AcRxObject)

AcEdCommand::~AcEdCommand() = default;
AcEdCommandStack::~AcEdCommandStack() = default;

namespace ed {

namespace {

// Programs register global names with the mark that users type in front of them, or without.
std::wstring_view without_mark(std::wstring_view name) {
    return name.size() > 1 && name.front() == L'_' ? name.substr(1) : name;
}

class registered_command final : public AcEdCommand {
public:
    registered_command(std::wstring global, std::wstring local, Adesk::Int32 flags, AcRxFunctionPtr function)
        : global_(std::move(global)), local_(std::move(local)), flags_(flags), function_(function) {}

    const ACHAR* globalName() const override { return global_.c_str(); }
    const ACHAR* localName() const override { return local_.c_str(); }
    Adesk::Int32 commandFlags() const override { return flags_; }
    AcRxFunctionPtr functionAddr() const override { return function_; }

private:
    std::wstring global_;
    std::wstring local_;
    Adesk::Int32 flags_;
    AcRxFunctionPtr function_;
};

struct group {
    std::wstring name;
    std::vector<std::unique_ptr<registered_command>> commands;
};

class command_stack final : public AcEdCommandStack {
public:
    Acad::ErrorStatus addCommand(const ACHAR* group_name, const ACHAR* global, const ACHAR* local,
                                 Adesk::Int32 flags, AcRxFunctionPtr function, AcEdUIContext* /*context*/,
                                 int /*code*/, HINSTANCE /*resource*/, AcEdCommand** command) override {
        if (command != nullptr)
            *command = nullptr;
        if (group_name == nullptr || global == nullptr || *global == 0 || function == nullptr)
            return Acad::eInvalidInput;
        const std::wstring local_name = local != nullptr && *local != 0 ? local : global;
        group* owner = find(group_name);
        if (owner == nullptr)
            owner = &groups_.emplace_back(group{group_name, {}});
        for (const auto& known : owner->commands)
            if (base::equal_no_case(known->globalName(), global) ||
                base::equal_no_case(known->localName(), local_name))
                return Acad::eDuplicateKey;
        owner->commands.push_back(std::make_unique<registered_command>(global, local_name, flags, function));
        if (command != nullptr)
            *command = owner->commands.back().get();
        return Acad::eOk;
    }

    Acad::ErrorStatus removeCmd(const ACHAR* group_name, const ACHAR* global) override {
        group* const owner = group_name != nullptr ? find(group_name) : nullptr;
        if (owner == nullptr || global == nullptr)
            return Acad::eKeyNotFound;
        const auto gone =
            std::find_if(owner->commands.begin(), owner->commands.end(),
                         [&](const auto& known) { return base::equal_no_case(known->globalName(), global); });
        if (gone == owner->commands.end())
            return Acad::eKeyNotFound;
        removed_.push_back(std::move(*gone));
        owner->commands.erase(gone);
        return Acad::eOk;
    }

    Acad::ErrorStatus removeGroup(const ACHAR* group_name) override {
        if (group_name == nullptr)
            return Acad::eKeyNotFound;
        group* const gone = find(group_name);
        if (gone == nullptr)
            return Acad::eKeyNotFound;
        std::move(gone->commands.begin(), gone->commands.end(), std::back_inserter(removed_));
        groups_.erase(groups_.begin() + (gone - groups_.data()));
        return Acad::eOk;
    }

    AcEdCommand* lookupGlobalCmd(const ACHAR* name) override {
        return lookup(name, &AcEdCommand::globalName, nullptr);
    }
    AcEdCommand* lookupLocalCmd(const ACHAR* name) override {
        return lookup(name, &AcEdCommand::localName, nullptr);
    }
    AcEdCommand* lookupCmd(const ACHAR* name, const ACHAR* group_name) override {
        return lookup(name, &AcEdCommand::globalName, group_name);
    }

    const std::vector<group>& groups() const { return groups_; }

private:
    group* find(std::wstring_view name) {
        const auto at = std::find_if(groups_.begin(), groups_.end(), [&](const group& known) {
            return base::equal_no_case(known.name, name);
        });
        return at == groups_.end() ? nullptr : &*at;
    }

    AcEdCommand* lookup(const ACHAR* name, const ACHAR* (AcEdCommand::*which)() const,
                        const ACHAR* group_name) {
        if (name == nullptr)
            return nullptr;
        const std::wstring_view wanted = without_mark(name);
        for (auto owner = groups_.rbegin(); owner != groups_.rend(); ++owner) {
            if (group_name != nullptr && !base::equal_no_case(owner->name, group_name))
                continue;
            for (const auto& known : owner->commands)
                if (base::equal_no_case(without_mark((known.get()->*which)()), wanted))
                    return known.get();
        }
        return nullptr;
    }

    std::vector<group> groups_;
    // A command may be the one that runs; its name is asked for to its end.
    std::vector<std::unique_ptr<registered_command>> removed_;
};

command_stack* the_stack = nullptr;

} // namespace

void register_command_stack() {
    if (the_stack != nullptr)
        return;
    AcEdCommand::rxInit();
    AcEdCommandStack::rxInit();
    acrxBuildClassHierarchy();
    auto stack = std::make_unique<command_stack>();
    the_stack = stack.get();
    Adesk::UInt32 id = 0;
    acrxSysRegistry()->atPut(ACED_REGISTERED_COMMANDS, stack.release(), id); // the registry's
}

std::vector<std::pair<std::wstring, const AcEdCommand*>> all_commands() {
    std::vector<std::pair<std::wstring, const AcEdCommand*>> found;
    if (the_stack != nullptr)
        for (const group& group : the_stack->groups())
            for (const auto& command : group.commands)
                found.emplace_back(group.name, command.get());
    return found;
}

} // namespace ed
