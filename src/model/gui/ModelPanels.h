#pragma once
// What the main program opens of the model panels. Both are modal and work on copies:
// the part or model given is changed only when the user accepts. In demo mode they
// show what is there and change nothing.
#include "app/PanelOutcome.h"

class QWidget;

namespace tarvex {

class FactorList;
class InternalModel;
class ModelConfiguration;

// The model selection over the sample's factors (their names become the inputs of a
// new internal model, in list order).
PanelOutcome openModelSelection(QWidget* parent, ModelConfiguration& model, const FactorList& factors, bool demoMode);

// The link between the sample's factors and the inputs of `model`.
PanelOutcome openFactorLink(QWidget* parent, InternalModel& model, const FactorList& factors, bool demoMode);

}  // namespace tarvex
