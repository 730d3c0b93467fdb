#pragma once
// A model that is a spreadsheet workbook: the sample goes into its sheet
// "Inputs", the user runs the workbook in the spreadsheet application, and
// the results come back from its sheet "Outputs". The application is reached
// through an engine behind this interface; a program without one can't run
// such a model.
#include <functional>
#include <string>

namespace tarvex {

class MessageSink;
class ModelConfiguration;
class PrepConfiguration;

inline constexpr const char* kSpreadsheetExecutable = "Excel Application";
inline constexpr const char* kSpreadsheetMissingText = "Excel not registered properly";

class SpreadsheetEngine {
public:
    virtual ~SpreadsheetEngine() = default;
    // Writes the factor names and the sample rows of `prep` into the workbook
    // model.outputFile() (unless the model's kind says that the workbook holds
    // results already), waits until the user has closed the application, and
    // reads the outputs into `model`: output names, one time point 0.0 per
    // run, the values in its data file. While it waits it calls `refresh`
    // now and then, which brings the display up to date without taking user
    // input. Returns 1, or 0 after telling `messages` what went wrong where
    // the engine knows more than the caller.
    [[nodiscard]] virtual int runSpreadsheet(ModelConfiguration& model, const PrepConfiguration& prep,
                                             MessageSink& messages, const std::function<void()>& refresh) = 0;
};

}  // namespace tarvex
