#pragma once
// The inputs of an internal model: added, renamed, moved and deleted on a copy of the
// model, which the caller takes back on acceptance. Every refusal is the model's, shown
// with its text.
#include "model/InternalModel.h"
#include "panels/layer/Panel.h"

namespace tarvex {

class PIntModFacList : public Panel {
public:
    explicit PIntModFacList(const InternalModel& model, QWidget* parent = nullptr);

    // The edited copy; meaningful once the panel was accepted.
    const InternalModel& model() const { return model_; }
    InternalModel& model() { return model_; }

    virtual void addFactor();
    virtual void modify();
    virtual void moveUp();
    virtual void moveDown();
    virtual void deleteFac();
    virtual void delAll();

private:
    void fillList(int selectedRow);
    // The selected row, or -1 after telling the user that none is.
    int selectedFactor();
    void refuse();
    void move(int by);

    InternalModel model_;
};

}  // namespace tarvex
