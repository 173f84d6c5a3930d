// The layer control bar: buttons that turn the architecture's and the water and drainage layers and entities
// on and off, freeze and lock them as a whole, and a row of them for every pipe system.
//
// It holds no states: what it shows is read from the current drawing when somebody looks or presses.
#pragma once

#include "module/frame/ModulePort.h"
#include "module/layertools/BarSystems.h"

#include "afx.h"
#include "ui/bar.h"

#include <cstddef>
#include <memory>
#include <vector>

class AcApDocManagerReactor;

class ZEF_PIPESYSTEM_PORT CLayerControlBar final : public ui::bar {
public:
    // The one that the module has; null before Create, which makes it when it is not there but does not show
    // it, and after Release, which destroys it.
    static CLayerControlBar* Get();
    static CLayerControlBar& Create();
    static void Release();

    CLayerControlBar(const CLayerControlBar&) = delete;
    CLayerControlBar& operator=(const CLayerControlBar&) = delete;
    ~CLayerControlBar() override;

    // Shows it to the user.
    void Show();
    // Whether the user can press its buttons.
    void EnableWindow(bool enable);
    // Layers, entities or marks have changed: whoever shows the bar does so as they are now.
    void Refresh();

    // The system whose row was pressed last, by its name; empty when none was since it was taken last.
    CString TakeChosenSystem();
    // Whether the row of a system is on, by the system's name; true for one without a row.
    bool IsSystemOn(const CString& system) const;

    // The buttons of row N, counted from 0 through all pages: kFirstRowName + N its name, and from
    // kFirstRowButton + 3 N on its on/off, freeze and lock.
    static constexpr int kFirstRowName = 2100;
    static constexpr int kFirstRowButton = 3000;

    ui::bar_content content() const override;
    void press(int id) override;

private:
    CLayerControlBar();

    void UpdateSystems();
    void PressToggle(std::size_t toggle);
    void PressRow(std::size_t row, int button);
    void ChooseSystem(const BarSystem& system);
    void Turn(int paging);
    void AskPageSize();

    std::vector<BarSystem> m_systems;
    std::unique_ptr<AcApDocManagerReactor> m_reactor;
    CString m_chosen;
    std::size_t m_page = 0;
    bool m_isEnabled;
};

// The command tckz.
void ShowLayerControlBar();
