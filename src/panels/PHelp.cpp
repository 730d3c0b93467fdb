#include "panels/PHelp.h"

#include <QWidget>
#include <algorithm>

#include "panels/layer/Bitmaps.h"

namespace tarvex {

namespace {

// "Pratictioner's" is the word these panels have always shown.
constexpr HintEntry kHints[] = {
    {"PFast", "../help/fast.bmp", "Help - Fast", "Pratictioner's Hint. Fast"},
    {"PFixed", "../help/fixed.bmp", "Help - Fixed Samples", "Pratictioner's Hint. Fixed Samples"},
    // The Latin hypercube shares the random method's picture.
    {"PLatin", "../help/random.bmp", "Help - Latin HyperCube", "Pratictioner's Hint. Latin HyperCube"},
    {"PLpTau", "../help/lptau.bmp", "Help - QuasiRandom LpTau", "Pratictioner's Hint. QuasiRandom LpTau"},
    {"PMorris", "../help/morris.bmp", "Help - Morris", "Pratictioner's Hint. Morris"},
    {"PRandom", "../help/random.bmp", "Help - Random", "Pratictioner's Hint. Random"},
    {"PRepLatin", "../help/repLatin.bmp", "Help - replicated Latin hypercube", "Pratictioner's Hint. rep Latin"},
    {"PSobol", "../help/sobol.bmp", "Help - Sobol", "Pratictioner's Hint. Sobol"},
    {"PTruncation", "../help/truncation.bmp", "Help - Default Truncation", "Pratictioner's Hint. Default Truncation"},
};

// Shows the picture and makes the panel as large as the picture needs.
void fitPicture(PHelp& panel, const std::string& bitmap) {
    panel.setBitmap("IcText", bitmap);
    if (QWidget* w = panel.window()) {
        w->adjustSize();
        w->resize(std::max(w->width(), 380), std::max(w->height(), 223));
    }
}

}  // namespace

PHelp::PHelp(const std::string& title, QWidget* parent) : Panel("Help", title, "PHelp.ui", 0, 0, 380, 223, parent) {
    registerCallback("dismiss", [this] { dismiss(); });
}

void PHelp::dismiss() {
    if (isModalRunning()) endModal(1);
    else hide();
}

void showHelpPanel(const std::string& name, QWidget* parent) {
    PHelp panel("Help - " + name, parent);
    panel.setLabel("MlTitle", name + " model description");
    fitPicture(panel, "../help/" + name + ".bmp");
    panel.moveToCenter();
    panel.showModal();
}

const HintEntry* findHint(const std::string& caller) {
    for (const HintEntry& h : kHints)
        if (caller == h.caller) return &h;
    return nullptr;
}

int showHint(const std::string& caller, int& helpOpen, QWidget* parent) {
    const HintEntry* hint = findHint(caller);
    if (!hint || helpOpen) return 0;
    helpOpen = 1;
    {
        PHelp panel(hint->title, parent);
        panel.setLabel("MlTitle", hint->heading);
        fitPicture(panel, hint->bitmap);
        panel.showModal();
    }
    helpOpen = 0;
    return 1;
}

PQuickHelp::PQuickHelp(QWidget* parent) : Panel("Quick", "Quick Help", "PQuickHelp.ui", 0, 0, 223, 135, parent) {}

int PQuickHelp::showPicture(const std::string& bitmap) { return setBitmap("IcText", bitmap); }

}  // namespace tarvex
