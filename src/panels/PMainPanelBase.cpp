#include "panels/PMainPanelBase.h"

namespace tarvex {

const char* const PMainPanelBase::kCallbacks[28] = {
    "ishigami",
    "loadCfg",
    "analyse",
    "sobol1",
    "AboutTarvex",
    "help",
    "seeLog",
    "visualize",
    "oldGeneration",
    "helpSearch",
    "linear",
    "changeSel",
    "selectInput",
    "monteCarlo",
    "configure",
    "quickSave",
    "generate",
    "sobol3",
    "levelE",
    "resetConfiguration",
    "velsFile",
    "start",
    "sobol0",
    "saveCfg",
    "importGeneration",
    "sobol2",
    "abortMonteCarlo",
    "terminate",
};

PMainPanelBase::PMainPanelBase(const std::string& name, const std::string& title, int x, int y, int width, int height,
                               QWidget* parent)
    : Panel(name, title, "PMainPanel.ui", x, y, width, height, parent) {
    registerCallback("ishigami", [this] { ishigami(); });
    registerCallback("loadCfg", [this] { loadCfg(); });
    registerCallback("analyse", [this] { analyse(); });
    registerCallback("sobol1", [this] { sobol1(); });
    registerCallback("AboutTarvex", [this] { AboutTarvex(); });
    registerCallback("help", [this] { help(); });
    registerCallback("seeLog", [this] { seeLog(); });
    registerCallback("visualize", [this] { visualize(); });
    registerCallback("oldGeneration", [this] { oldGeneration(); });
    registerCallback("helpSearch", [this] { helpSearch(); });
    registerCallback("linear", [this] { linear(); });
    registerCallback("changeSel", [this] { changeSel(); });
    registerCallback("selectInput", [this] { selectInput(); });
    registerCallback("monteCarlo", [this] { monteCarlo(); });
    registerCallback("configure", [this] { configure(); });
    registerCallback("quickSave", [this] { quickSave(); });
    registerCallback("generate", [this] { generate(); });
    registerCallback("sobol3", [this] { sobol3(); });
    registerCallback("levelE", [this] { levelE(); });
    registerCallback("resetConfiguration", [this] { resetConfiguration(); });
    registerCallback("velsFile", [this] { velsFile(); });
    registerCallback("start", [this] { start(); });
    registerCallback("sobol0", [this] { sobol0(); });
    registerCallback("saveCfg", [this] { saveCfg(); });
    registerCallback("importGeneration", [this] { importGeneration(); });
    registerCallback("sobol2", [this] { sobol2(); });
    registerCallback("abortMonteCarlo", [this] { abortMonteCarlo(); });
    registerCallback("terminate", [this] { terminate(); });
}

}  // namespace tarvex
