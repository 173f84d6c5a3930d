#include "module/layertools/LayerControlBar.h"

#include "aced.h"
#include "module/layertools/BarActions.h"
#include "module/layertools/DocumentLock.h"
#include "module/layertools/LayerDefinition.h"
#include "module/layertools/LayerDisplay.h"
#include "module/layertools/LayerToolBar.h"
#include "siblings/zef_kernal/KernalOptions.h"
#include "siblings/zef_kernal/TRegProperty.h"
#include "ui/presenter.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace {

std::unique_ptr<CLayerControlBar> g_bar;

constexpr wchar_t title[] = L"维朗图层管理";

// ---- what buttons look like

// The picture and the word of a button that is set, and of one that is not.
struct Look {
    const wchar_t* setIcon;
    const wchar_t* clearIcon;
    const wchar_t* setWord;
    const wchar_t* clearWord;
};

constexpr Look lookOn{L"ID_LIGHT_ON", L"ID_LIGHT_OFF", L"开", L"关"};
constexpr Look lookFrozen{L"ZEF_16_FREEZEOTHER", L"ZEF_16_UNFREEZE", L"冻结", L"-"};
constexpr Look lookLocked{L"KOL_16_SXZC", L"KOL_16_JXZC", L"锁定", L"-"};

const Look& LookOf(LayerState state) {
    return state == LayerState::Frozen ? lookFrozen : state == LayerState::Locked ? lookLocked : lookOn;
}

ui::bar_button Button(int id, const wchar_t* label, const Look& look, bool set) {
    return {id, label, set ? look.setIcon : look.clearIcon, set ? look.setWord : look.clearWord};
}

// ---- the fixed buttons

enum FixedButton {
    kUpdateSystems = 2024,
    kAllLayersOn,
    kCleanArchitectureTag,
    kSetArchitectureTag,
    kDefineLayers = 2033,
    kPageSize = 2038,
    kFirstPage = 2041,
    kPreviousPage,
    kNextPage,
    kLastPage,
};

// Labels begin with room for the icon.
struct Plain {
    int id;
    const wchar_t* label;
    const wchar_t* icon;
};

constexpr Plain plainButtons[] = {
    {kUpdateSystems, L"       更新管线系统", L""},
    {kAllLayersOn, L"  打开全部层", L"ID_LIGHT_ALLON"},
    {kDefineLayers, L"  定义图层", L"ICON_16_PICKENT"},
    {kCleanArchitectureTag, L"  清除建筑标识", L"ICON_16_ERASE"},
    {kSetArchitectureTag, L"  建筑标识", L"ICON_16_VANTREL"},
    {kPageSize, L"        页数设置", L"ICON_16_MATCH"},
};

struct Toggle {
    int id;
    const wchar_t* label;
    BarToggle bit;
    LayerFamily family;
    std::optional<LayerState> layers; // the state that it gives to layers; none for toggles of entities
};

constexpr Toggle toggles[] = {
    {2028, L"  建筑图元", kArchitectureEntities, LayerFamily::Architecture, std::nullopt},
    {2029, L"  给排水图元", kDrainageEntities, LayerFamily::Drainage, std::nullopt},
    {2030, L"  其他图元", kOtherEntities, LayerFamily::Other, std::nullopt},
    {2031, L"  显示建筑层", kArchitectureLayers, LayerFamily::Architecture, LayerState::Off},
    {2032, L"  显示给排水层", kDrainageLayers, LayerFamily::Drainage, LayerState::Off},
    {2034, L"  冻结建筑层", kFreezeArchitecture, LayerFamily::Architecture, LayerState::Frozen},
    {2035, L"  冻结给排水层", kFreezeDrainage, LayerFamily::Drainage, LayerState::Frozen},
    {2036, L"  锁定建筑层", kLockArchitecture, LayerFamily::Architecture, LayerState::Locked},
    {2037, L"  锁定给排水层", kLockDrainage, LayerFamily::Drainage, LayerState::Locked},
};

constexpr Plain pagingButtons[] = {
    {kFirstPage, L"首页", L""},
    {kPreviousPage, L"上页", L""},
    {kNextPage, L"下页", L""},
    {kLastPage, L"尾页", L""},
};

// ---- the rows

struct RowButton {
    BarRowBit bit;
    LayerState state;
};

constexpr RowButton rowButtons[] = {
    {kRowOn, LayerState::Off},
    {kRowFrozen, LayerState::Frozen},
    {kRowLocked, LayerState::Locked},
};
constexpr int rowButtonCount = static_cast<int>(std::size(rowButtons));

// Whether a button that is set means that layers have the state: a light that is on means that they are not
// off.
bool WantedOf(LayerState state, bool set) {
    return (state == LayerState::Off) != set;
}

// ---- pages

constexpr wchar_t pageKey[] = L"LayerControl";
constexpr wchar_t pageValue[] = L"ShowSysNum";
constexpr int usualPageSize = 10;
constexpr int greatestPageSize = 50;

TRegProperty PageOptions() {
    return {GetRegLocation(), pageKey};
}

std::size_t PageSize() {
    int size = usualPageSize;
    PageOptions().GetValue(pageValue, size);
    return static_cast<std::size_t>(size < 1 || size > greatestPageSize ? usualPageSize : size);
}

std::size_t PageCount(std::size_t rows) {
    return std::max<std::size_t>((rows + PageSize() - 1) / PageSize(), 1);
}

void Send(const wchar_t* text) {
    acDocManager->sendStringToExecute(curDoc(), text);
}

// Another document's layers are shown when it becomes current.
class CBarDocReactor final : public AcApDocManagerReactor {
public:
    explicit CBarDocReactor(CLayerControlBar& bar) : m_bar(bar) {}
    void documentActivated(AcApDocument*) override { m_bar.Refresh(); }

private:
    CLayerControlBar& m_bar;
};

} // namespace

CLayerControlBar* CLayerControlBar::Get() {
    return g_bar.get();
}

CLayerControlBar& CLayerControlBar::Create() {
    if (g_bar == nullptr)
        g_bar.reset(new CLayerControlBar);
    return *g_bar;
}

void CLayerControlBar::Release() {
    g_bar.reset();
}

CLayerControlBar::CLayerControlBar()
    : m_reactor(std::make_unique<CBarDocReactor>(*this)), m_isEnabled(acDocManager->documentCount() != 0) {
    acDocManager->addReactor(m_reactor.get());
    UpdateSystems();
}

CLayerControlBar::~CLayerControlBar() {
    acDocManager->removeReactor(m_reactor.get());
    ui::hide(*this);
}

void CLayerControlBar::Show() {
    ui::show(*this);
}

void CLayerControlBar::EnableWindow(bool enable) {
    m_isEnabled = enable;
    Refresh();
}

void CLayerControlBar::Refresh() {
    ui::refresh(*this);
}

CString CLayerControlBar::TakeChosenSystem() {
    return std::exchange(m_chosen, {});
}

bool CLayerControlBar::IsSystemOn(const CString& system) const {
    const auto found = std::ranges::find(m_systems, system, &BarSystem::m_system);
    return found == m_systems.end() || (CBarReading({*found}).GetRow(0).m_state & kRowOn) != 0;
}

ui::bar_content CLayerControlBar::content() const {
    ui::bar_content content;
    content.title = title;
    content.enabled = m_isEnabled;
    std::optional<CBarReading> reading;
    if (curDoc() != nullptr)
        reading.emplace(m_systems);
    // Three in a line: a line for each kind, below each other what is of one family.
    constexpr std::size_t inLine = 3;
    for (std::size_t i = 0; i < std::size(plainButtons); ++i) {
        if (i % inLine == 0)
            content.groups.emplace_back();
        content.groups.back().push_back({plainButtons[i].id, plainButtons[i].label, plainButtons[i].icon});
    }
    for (const Toggle& toggle : toggles) {
        if (toggle.family == LayerFamily::Architecture)
            content.groups.emplace_back();
        content.groups.back().push_back(
            Button(toggle.id, toggle.label, LookOf(toggle.layers.value_or(LayerState::Off)),
                   reading ? reading->IsSet(toggle.bit) : (kAllShown & toggle.bit) != 0));
    }
    content.row_names = {L"系统", L"MARK"};
    content.columns = {{L"开关", L"ON"}, {L"冻结", L"FREEZE"}, {L"锁定", L"LOCK"}};
    for (std::size_t i = 0; i < m_systems.size(); ++i) {
        const int row = static_cast<int>(i);
        ui::bar_row shown{{kFirstRowName + row, m_systems[i].m_rowName.GetString()}, {}};
        for (int b = 0; b < rowButtonCount; ++b) {
            const RowButton& button = rowButtons[b];
            const int id = kFirstRowButton + rowButtonCount * row + b;
            const bool set = ((reading ? reading->GetRow(i).m_state : unsigned{kRowOn}) & button.bit) != 0;
            shown.buttons.push_back(Button(id, L"", LookOf(button.state), set));
            // Systems that the drawing has nothing of stand out by saying nothing.
            if (!reading || (reading->GetRow(i).m_layers.empty() && (set || button.bit != kRowOn)))
                shown.buttons.back().state.clear();
        }
        content.rows.push_back(std::move(shown));
    }
    content.pages = PageCount(m_systems.size());
    content.page = std::min(m_page, content.pages - 1) + 1;
    content.first_row = (content.page - 1) * PageSize();
    content.rows_shown = std::min(PageSize(), m_systems.size() - content.first_row);
    for (const Plain& button : pagingButtons)
        content.paging.push_back({button.id, button.label, button.icon});
    return content;
}

void CLayerControlBar::press(int id) {
    if (!m_isEnabled || curDoc() == nullptr)
        return;
    const auto toggle = std::ranges::find(toggles, id, &Toggle::id);
    const int rows = static_cast<int>(m_systems.size());
    if (toggle != std::end(toggles)) {
        PressToggle(static_cast<std::size_t>(toggle - std::begin(toggles)));
    } else if (id >= kFirstRowButton && id < kFirstRowButton + rowButtonCount * rows) {
        const int offset = id - kFirstRowButton;
        PressRow(static_cast<std::size_t>(offset / rowButtonCount), offset % rowButtonCount);
    } else if (id >= kFirstRowName && id < kFirstRowName + rows) {
        ChooseSystem(m_systems[static_cast<std::size_t>(id - kFirstRowName)]);
    } else if (id >= kFirstPage && id <= kLastPage) {
        Turn(id);
    } else if (id == kUpdateSystems) {
        UpdateSystems();
    } else if (id == kAllLayersOn) {
        CLayerToolBar::Instance().SetAllPipeLayOpen();
    } else if (id == kCleanArchitectureTag) {
        Send(L"\x1b"
             L"CleanDolmoLayTag");
    } else if (id == kSetArchitectureTag) {
        Send(L"\x1bSetDolmoLayTag");
    } else if (id == kDefineLayers) {
        DefineLayers();
    } else if (id == kPageSize) {
        AskPageSize();
    } else {
        return;
    }
    Refresh();
}

void CLayerControlBar::UpdateSystems() {
    m_systems = GetBarSystems();
    m_page = 0;
}

void CLayerControlBar::PressToggle(std::size_t number) {
    const CDocumentLock lock;
    const Toggle& toggle = toggles[number];
    CBarReading reading(m_systems);
    const bool set = !reading.IsSet(toggle.bit);
    if (toggle.layers) {
        const std::vector<AcDbObjectId> layers = reading.GetFamilies().GetLayers(toggle.family);
        if (layers.empty()) {
            acutPrintf(L"\n本图中没有%s图层！\n",
                       toggle.family == LayerFamily::Architecture ? L"建筑" : L"给排水");
            return;
        }
        SetLayers(layers, *toggle.layers, WantedOf(*toggle.layers, set));
        RegenerateDisplay();
    } else if (ShowFamily(reading.GetFamilies(), toggle.bit, set)) {
        reading.SetEntityToggle(toggle.bit, set);
    }
    reading.Store(m_systems);
}

void CLayerControlBar::PressRow(std::size_t row, int button) {
    const CDocumentLock lock;
    const auto& [bit, state] = rowButtons[button];
    CBarReading reading(m_systems);
    const CBarReading::Row& pressed = reading.GetRow(row);
    const bool set = (pressed.m_state & bit) == 0;
    SetLayers(pressed.m_layers, state, WantedOf(state, set));
    const bool hasMarked = bit == kRowOn && ShowMarked(m_systems[row], set);
    if (pressed.m_layers.empty() && !hasMarked) {
        acutPrintf(L"\n本图中没有\"%s\"的图层！\n", m_systems[row].m_system.GetString());
        return;
    }
    RegenerateDisplay();
    reading.SetRow(row, bit, set);
    reading.Store(m_systems);
}

void CLayerControlBar::ChooseSystem(const BarSystem& system) {
    m_chosen = system.m_system;
    Send(L"gpsbs ");
}

void CLayerControlBar::Turn(int paging) {
    const std::size_t last = PageCount(m_systems.size()) - 1;
    const std::size_t page = std::min(m_page, last);
    m_page = paging == kFirstPage      ? 0
             : paging == kPreviousPage ? page - (page > 0 ? 1 : 0)
             : paging == kNextPage     ? std::min(page + 1, last)
                                       : last;
}

void CLayerControlBar::AskPageSize() {
    const std::size_t first = m_page * PageSize();
    CString prompt;
    prompt.Format(L"\n请输入每页显示的系统数(1-%d)<%d>:", greatestPageSize, static_cast<int>(PageSize()));
    for (;;) {
        int size = 0;
        if (acedGetInt(prompt, &size) != RTNORM)
            return;
        if (size >= 1 && size <= greatestPageSize) {
            PageOptions().SetValue(pageValue, size);
            m_page = first / PageSize(); // what was first stays on the page
            return;
        }
        acutPrintf(L"\n每页应为 1 到 %d 个系统！", greatestPageSize);
    }
}

void ShowLayerControlBar() {
    CLayerControlBar::Create().Show();
}
