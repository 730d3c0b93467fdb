#pragma once
// The link between the sample's factors and the inputs of an internal model: one row
// per sample factor, beside it the model input that takes its column. Moving an input
// up or down swaps it with its neighbour in the panel and in the model copy, so that
// the inputs come to stand in the order of the sample's columns.
#include <string>
#include <vector>

#include "model/InternalModel.h"
#include "panels/layer/Panel.h"

namespace tarvex {

class PLinkFactors : public Panel {
public:
    // `model` is the copy to reorder; in demo mode nothing can be moved.
    PLinkFactors(InternalModel& model, std::vector<std::string> factorNames, bool demoMode, QWidget* parent = nullptr);

    virtual void scrollUp();
    virtual void scrollDown();

private:
    void fillLinks(int selectedRow);
    void move(int by);

    InternalModel& model_;
    std::vector<std::string> factorNames_;
};

}  // namespace tarvex
