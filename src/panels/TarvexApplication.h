#pragma once
// The desktop program's application object: the Qt application (its display), the
// installation directory, and the panels it owns.
#include <memory>
#include <string>
#include <vector>

class QApplication;

namespace tarvex {

class Panel;

class TarvexApplication {
public:
    // Opens the display. When there is none, hasDisplay() is false and nothing else
    // happened: Qt is never asked, since it would abort the process.
    TarvexApplication(const char* name, const char* displayName, int& argc, char** argv);
    virtual ~TarvexApplication();
    TarvexApplication(const TarvexApplication&) = delete;
    TarvexApplication& operator=(const TarvexApplication&) = delete;

    static TarvexApplication* instance();

    bool hasDisplay() const { return qt_ != nullptr; }
    const std::string& name() const { return name_; }
    const std::string& mainDirectory() const { return mainDirectory_; }
    void setMainDirectory(const std::string& directory) { mainDirectory_ = directory; }

    // Registers the picture readers and creates and shows the main panel.
    virtual void buildPanels();
    // buildPanels, then the event loop; returns the loop's status.
    int run();

    void addPanel(std::unique_ptr<Panel> panel);
    Panel* mainPanel() const;
    // Deletes a panel the application owns; 0 if it owns no such panel.
    int deletePanel(Panel* panel);

    // Whether the platform Qt would pick (from -platform, QT_QPA_PLATFORM, or X11 by
    // default) has a display to connect to: an X server that accepts the connection
    // (from -display or DISPLAY), a Wayland socket, or an offscreen platform.
    static bool displayAvailable(int argc, char** argv);

private:
    void scheduleScreenshot();

    std::string name_;
    std::string mainDirectory_;
    std::unique_ptr<QApplication> qt_;
    std::vector<std::unique_ptr<Panel>> panels_;
};

// The orderly end, from the main panel's terminate and the closing of its window:
// deletes the panel (writing what its destruction writes), then ends the event loop
// with status 0. It runs once the current event is done, since the panel's own
// window is usually still busy with it.
void terminateProgram(Panel& panel);

// The program's start sequence; main() returns what it returns: 0 after a normal
// run, -1 when no display could be opened.
int tarvexMain(int argc, char** argv);

}  // namespace tarvex
