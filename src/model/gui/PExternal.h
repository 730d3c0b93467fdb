#pragma once
// The model selection: an external executable (or a workbook), only an output file to
// read, or an internal model. It works on a copy of the project's model part, which
// the caller takes back when the panel was accepted (modal result 1). In demo mode
// the panel only shows the model.
#include <string>
#include <vector>

#include "model/ModelConfiguration.h"
#include "panels/layer/Panel.h"

namespace tarvex {

// The lines of the format help of the model output file, as the user reads them.
const std::vector<std::string>& modelOutputFormatLines();

class PExternal : public Panel {
public:
    PExternal(ModelConfiguration& model, std::vector<std::string> factorNames, bool demoMode,
              QWidget* parent = nullptr);

    // F1 explains the kind of model the selector is on.
    std::string helpTopic() const override;

    virtual void switchModel();
    virtual void switchExternalExe();
    virtual void switchExcel();
    virtual void modelSelect();
    virtual void outputSelect();
    virtual void loadIntModel();
    virtual void NewIntModel();
    virtual void modIntModel();
    virtual void changeIntModelFile();
    virtual void ok();
    virtual void formatHelp();

    int accepted() const { return accepted_; }

private:
    void fill();
    void showInternalModelFile();
    // A message while `modal_` keeps the panel's callbacks from piling up.
    void message(const std::string& title, const std::string& text);

    ModelConfiguration& model_;
    std::vector<std::string> factorNames_;
    bool demoMode_;
    int accepted_ = 0;
    int modal_ = 0;
};

}  // namespace tarvex
