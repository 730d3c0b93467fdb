#pragma once
// The base class of the main panel: loads PMainPanel.ui and registers its callbacks, in
// their fixed order, each calling the virtual operation of the same name. An operation
// that the derived panel doesn't implement prints its trace line.
#include <string>

#include "panels/layer/Panel.h"

namespace tarvex {

class PMainPanelBase : public Panel {
public:
    PMainPanelBase(const std::string& name, const std::string& title, int x, int y, int width, int height,
                   QWidget* parent = nullptr);

    // The callbacks in the order they are registered.
    static const char* const kCallbacks[28];

    virtual void ishigami() { traceCallback("ishigami"); }
    virtual void loadCfg() { traceCallback("loadCfg"); }
    virtual void analyse() { traceCallback("analyse"); }
    virtual void sobol1() { traceCallback("sobol1"); }
    virtual void AboutTarvex() { traceCallback("AboutTarvex"); }
    virtual void help() { traceCallback("help"); }
    virtual void seeLog() { traceCallback("seeLog"); }
    virtual void visualize() { traceCallback("visualize"); }
    virtual void oldGeneration() { traceCallback("oldGeneration"); }
    virtual void helpSearch() { traceCallback("helpSearch"); }
    virtual void linear() { traceCallback("linear"); }
    virtual void changeSel() { traceCallback("changeSel"); }
    virtual void selectInput() { traceCallback("selectInput"); }
    virtual void monteCarlo() { traceCallback("monteCarlo"); }
    virtual void configure() { traceCallback("configure"); }
    virtual void quickSave() { traceCallback("quickSave"); }
    virtual void generate() { traceCallback("generate"); }
    virtual void sobol3() { traceCallback("sobol3"); }
    virtual void levelE() { traceCallback("levelE"); }
    virtual void resetConfiguration() { traceCallback("resetConfiguration"); }
    virtual void velsFile() { traceCallback("velsFile"); }
    virtual void start() { traceCallback("start"); }
    virtual void sobol0() { traceCallback("sobol0"); }
    virtual void saveCfg() { traceCallback("saveCfg"); }
    virtual void importGeneration() { traceCallback("importGeneration"); }
    virtual void sobol2() { traceCallback("sobol2"); }
    virtual void abortMonteCarlo() { traceCallback("abortMonteCarlo"); }
    virtual void terminate() { traceCallback("terminate"); }
};

}  // namespace tarvex
