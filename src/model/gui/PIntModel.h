#pragma once
// The internal model editor: the list of equations of a model, its name and its
// inputs. It edits the model it is given (the caller's copy) and says on closing
// whether that model is to be kept: 1 accepted, 0 discarded. All checking is the
// model's; the panel shows the model's text under "Error".
#include <string>

#include "model/InternalModel.h"
#include "panels/layer/Panel.h"

namespace tarvex {

class PIntModel : public Panel {
public:
    // Rows shown below the last equation, so that the list reads as open-ended.
    static constexpr int kEmptyRows = 8;

    explicit PIntModel(InternalModel& model, QWidget* parent = nullptr);

    // Set by any change to the model under edit, a file opened or a new model included.
    bool edited() const { return edited_; }

    virtual void addExpression();
    virtual void modifyExpression();
    virtual void deleteExpression();
    virtual void modifyFactors();
    virtual void newModel();
    virtual void open();
    virtual void save();
    virtual void saveAs();
    virtual void ok();
    virtual void exit();
    virtual void textModified();

private:
    void fill();
    void fillExpressions(int selectedRow);
    // The selected equation's row, or -1 after telling the user why there is none.
    int selectedExpression(const char* beyondList);
    int saveTo(const std::string& path);
    int saveModel();
    int questionWhenEdited(const char* text, const char* firstLabel);
    void showRefusal();

    InternalModel& model_;
    bool edited_ = false;
};

}  // namespace tarvex
