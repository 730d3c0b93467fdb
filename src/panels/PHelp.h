#pragma once
// Help pictures: the description of a demonstration case, the hints of the sampling
// and truncation panels, and the quick help of the pre-processor.
#include <string>

#include "panels/layer/Panel.h"

namespace tarvex {

class PHelp : public Panel {
public:
    explicit PHelp(const std::string& title, QWidget* parent = nullptr);
    virtual void dismiss();
};

// The description panel of a demonstration case ("Ishigami"): its picture
// "../help/<name>.bmp", titled "Help - <name>", modal until dismissed.
void showHelpPanel(const std::string& name, QWidget* parent = nullptr);

// A practitioner's hint, by the panel that asks for it ("PFast", "PLatin", ...).
struct HintEntry {
    const char* caller;
    const char* bitmap;
    const char* title;
    const char* heading;  // the MlTitle text
};
const HintEntry* findHint(const std::string& caller);

// Shows the caller's hint modally. While it is open the caller's `helpOpen` is 1 and a
// second request returns 0 without opening anything; so does an unknown caller.
int showHint(const std::string& caller, int& helpOpen, QWidget* parent = nullptr);

class PQuickHelp : public Panel {
public:
    explicit PQuickHelp(QWidget* parent = nullptr);
    // Shows a picture in IcText, e.g. "../help/QLatin.bmp"; 0 if it can't be read.
    int showPicture(const std::string& bitmap);
};

}  // namespace tarvex
