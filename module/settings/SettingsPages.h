// The pages of the command gxsz: each asks what to do, does that one thing and tells what came of it. Escape
// and Enter at any question leave everything as it is.
#pragma once

#include "module/standard/StandardManager.h"

namespace Settings {

void SystemsPage(CStandardManager& manager);
void GroupsPage(CStandardManager& manager);
void LayersPage(CStandardManager& manager);
void AliasesPage(CStandardManager& manager);
void AttachmentsPage(CStandardManager& manager);
void RulesPage(CStandardManager& manager);
void TextStylesPage(CStandardManager& manager);
void ObjectColorsPage(CStandardManager& manager);
void MaterialsPage();
void ImportPage(CStandardManager& manager);
void ComparePage(const CStandardManager& manager);

// Sets one value: "PATH=VALUE", where the path is a record's name and a field behind a slash, as in
// "给水/标注=J", "给水/管线/颜色=3", "文字样式/管径标注/字高=3.5".
void Assign(CStandardManager& manager, const CString& assignment);

} // namespace Settings
