#include "model/gui/ModelPanels.h"

#include <string>
#include <vector>

#include "correlation/FactorList.h"
#include "model/ModelConfiguration.h"
#include "model/gui/PExternal.h"
#include "model/gui/PLinkFactors.h"

namespace tarvex {

namespace {

std::vector<std::string> factorNames(const FactorList& factors) {
    std::vector<std::string> names;
    for (int i = 0; i < factors.factorCount(); ++i)
        if (const Factor* f = factors.getFactor(i)) names.push_back(f->name());
    return names;
}

}  // namespace

PanelOutcome openModelSelection(QWidget* parent, ModelConfiguration& model, const FactorList& factors, bool demoMode) {
    ModelConfiguration copy(model);
    PExternal panel(copy, factorNames(factors), demoMode, parent);
    panel.moveToCenter();
    if (panel.showModal() != 1 || !panel.accepted()) return PanelOutcome::Cancelled;
    // The copy holds the part's results too; exchanging hands them back without
    // copying the data file once more.
    model.swap(copy);
    return PanelOutcome::Accepted;
}

PanelOutcome openFactorLink(QWidget* parent, InternalModel& model, const FactorList& factors, bool demoMode) {
    InternalModel copy(model);
    PLinkFactors panel(copy, factorNames(factors), demoMode, parent);
    panel.moveToCenter();
    if (panel.showModal() != 1) return PanelOutcome::Cancelled;
    if (!demoMode) model = std::move(copy);
    return PanelOutcome::Accepted;
}

}  // namespace tarvex
