#include "panels/TarvexApplication.h"

#include <xcb/xcb.h>

#include <QApplication>
#include <QPixmap>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#include "panels/layer/Bitmaps.h"
#include "panels/layer/HelpSystem.h"
#include "panels/PMainPanel.h"
#include "panels/layer/Print.h"
#include "plots/gui/PlotWidgets.h"

namespace tarvex {

namespace {

TarvexApplication* theApplication = nullptr;

std::string argValue(int argc, char** argv, const char* option) {
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], option) == 0) return argv[i + 1];
    return {};
}

std::string envValue(const char* name) {
    const char* v = std::getenv(name);
    return v ? v : "";
}

// An X server whose last client leaves resets itself and refuses connections
// meanwhile. The probe therefore stays connected until Qt holds its own
// connection; otherwise Qt could arrive in that gap and abort the program.
xcb_connection_t*& heldProbe() {
    static xcb_connection_t* connection = nullptr;
    return connection;
}

void releaseProbe() {
    if (heldProbe()) xcb_disconnect(heldProbe());
    heldProbe() = nullptr;
}

bool x11Reachable(const std::string& displayName) {
    releaseProbe();
    if (displayName.empty() && envValue("DISPLAY").empty()) return false;
    int screen = 0;
    xcb_connection_t* c = xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), &screen);
    const bool ok = c && xcb_connection_has_error(c) == 0;
    if (ok) {
        heldProbe() = c;
    } else if (c) {
        xcb_disconnect(c);
    }
    return ok;
}

bool waylandReachable() {
    std::string socket = envValue("WAYLAND_DISPLAY");
    if (socket.empty()) return false;
    if (socket.front() != '/') {
        const std::string runtime = envValue("XDG_RUNTIME_DIR");
        if (runtime.empty()) return false;
        socket = runtime + "/" + socket;
    }
    std::error_code ec;
    return std::filesystem::exists(socket, ec);
}

}  // namespace

bool TarvexApplication::displayAvailable(int argc, char** argv) {
    std::string platforms = argValue(argc, argv, "-platform");
    if (platforms.empty()) platforms = envValue("QT_QPA_PLATFORM");
    if (platforms.empty()) platforms = "xcb";
    const std::string displayName = argValue(argc, argv, "-display");
    // Qt tries a ';'-separated list in order; options follow a ':'.
    size_t start = 0;
    while (start <= platforms.size()) {
        size_t end = platforms.find(';', start);
        if (end == std::string::npos) end = platforms.size();
        std::string p = platforms.substr(start, end - start);
        p = p.substr(0, p.find(':'));
        if (p == "xcb") {
            if (x11Reachable(displayName)) return true;
        } else if (p.rfind("wayland", 0) == 0) {
            if (waylandReachable()) return true;
        } else if (!p.empty()) {
            return true;  // offscreen, minimal, vnc, framebuffers: no display server to miss
        }
        start = end + 1;
    }
    return false;
}

TarvexApplication::TarvexApplication(const char* name, const char* displayName, int& argc, char** argv)
    : name_(name ? name : "") {
    (void)displayName;  // Qt takes the display from the environment or -display
    if (!displayAvailable(argc, argv)) return;
    QCoreApplication::setApplicationName(QString::fromStdString(name_));
    qt_ = std::make_unique<QApplication>(argc, argv);
    registerPlotWidgets();
    releaseProbe();
    // Qt sets the whole locale from the environment; numbers in files and texts are
    // written and read with '.' whatever the user's language.
    std::setlocale(LC_NUMERIC, "C");
    theApplication = this;
}

TarvexApplication::~TarvexApplication() {
    panels_.clear();
    if (qt_) HelpSystem::shutdown();
    qt_.reset();
    if (theApplication == this) theApplication = nullptr;
}

TarvexApplication* TarvexApplication::instance() { return theApplication; }

void TarvexApplication::buildPanels() {
    Bitmaps::registerReader("bmp");
    Bitmaps::registerReader("gif");
    auto panel = std::make_unique<PMainPanel>(
        "PMainPanel", "Tarvex: Simulation environment for uncertainty and sensitivity analysis", 30, 154, 500, 500,
        mainDirectory_);
    Panel* shown = panel.get();
    addPanel(std::move(panel));
    shown->show();
}

int TarvexApplication::run() {
    if (!qt_) return -1;
    buildPanels();
    if (!envValue("TARVEX_SCREENSHOT").empty()) scheduleScreenshot();
    if (panels_.empty()) return 0;
    return QApplication::exec();
}

void TarvexApplication::addPanel(std::unique_ptr<Panel> panel) {
    if (panel) panels_.push_back(std::move(panel));
}

Panel* TarvexApplication::mainPanel() const { return panels_.empty() ? nullptr : panels_.front().get(); }

int TarvexApplication::deletePanel(Panel* panel) {
    auto it = std::find_if(panels_.begin(), panels_.end(), [panel](const auto& p) { return p.get() == panel; });
    if (it == panels_.end()) return 0;
    panels_.erase(it);
    return 1;
}

// For the documentation and the start-up check under a virtual display: with
// TARVEX_SCREENSHOT=<file.png> the program saves what the screen shows of the main
// panel once it has settled, then ends as if the user had closed it.
void TarvexApplication::scheduleScreenshot() {
    Panel* main = mainPanel();
    if (!main) return;
    QPointer<QWidget> window = main->window();
    QTimer::singleShot(1500, qt_.get(), [this, window] {
        const std::string file = envValue("TARVEX_SCREENSHOT");
        if (!window) return;
        QScreen* screen = window->screen();
        const QRect frame = window->frameGeometry();
        QPixmap shot = screen ? screen->grabWindow(0, frame.x(), frame.y(), frame.width(), frame.height()) : QPixmap();
        if (shot.isNull() || !shot.save(QString::fromStdString(file))) printLine("Screenshot not saved: " + file);
        if (Panel* main = mainPanel()) terminateProgram(*main);
    });
}

void terminateProgram(Panel& panel) {
    QPointer<QWidget> window = panel.window();
    Panel* target = &panel;
    QTimer::singleShot(0, QCoreApplication::instance(), [target, window] {
        if (!window) return;  // already ended
        TarvexApplication* app = TarvexApplication::instance();
        if (!app || !app->deletePanel(target)) delete target;
        HelpSystem::shutdown();
        // Only the program has an event loop to end; a panel made on its own just goes.
        if (app) QCoreApplication::exit(0);
    });
}

}  // namespace tarvex
