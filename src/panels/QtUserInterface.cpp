#include "panels/QtUserInterface.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QWidget>

#include "model/gui/PExternalModel.h"
#include "model/gui/PGenerate.h"
#include "panels/LayerDialogs.h"
#include "panels/PAbout.h"
#include "panels/PHelp.h"
#include "panels/PLogFile.h"
#include "panels/layer/EventQueue.h"

namespace tarvex {

QtUserInterface::QtUserInterface(Panel* owner) : owner_(owner) {}

QtUserInterface::~QtUserInterface() = default;

QWidget* QtUserInterface::parentWidget() const { return owner_ ? owner_->window() : nullptr; }

// ------------------------------------------------------------ dialogs

void QtUserInterface::message(MessageKind kind, const std::string& title, const std::string& text) {
    // The toolkit's dialogs know errors, warnings and questions; information reads as
    // a warning with its one button.
    const LayerDialogs::Kind shown = kind == MessageKind::Error ? LayerDialogs::Kind::Error : LayerDialogs::Kind::Warning;
    (void)LayerDialogs::message(shown, title, text, false, "", "", parentWidget());
}

int QtUserInterface::ask(const Question& q) {
    const std::string first = q.buttons.empty() ? std::string() : q.buttons[0];
    const bool two = q.buttons.size() >= 2;
    const std::string second = two ? q.buttons[1] : std::string();
    const int firstChosen =
        LayerDialogs::message(LayerDialogs::Kind::Question, q.title, q.text, two, first, second, parentWidget());
    return firstChosen ? 0 : 1;
}

bool QtUserInterface::chooseFile(const FileRequest& request, FileChoice& choice) {
    std::vector<std::string> patterns;
    std::vector<std::string> descriptions;
    for (const FileFilter& f : request.filters) {
        patterns.push_back(f.pattern);
        descriptions.push_back(f.label);
    }
    std::string path;
    std::string directory;
    if (!LayerDialogs::chooseFile(request.title, request.directory, patterns, descriptions, request.save,
                                  parentWidget(), path, directory))
        return false;
    choice.path = path;
    choice.directory = directory;
    return true;
}

// ------------------------------------------------------------ progress

Panel* QtUserInterface::progressPanel() const {
    if (gauge_) return gauge_.get();
    return animation_.get();
}

void QtUserInterface::beginProgress(const ProgressRequest& request) {
    endProgress();
    Panel* panel = nullptr;
    if (request.kind == ProgressKind::Gauge) {
        gauge_ = std::make_unique<PGenerate>(request.name, request.title);
        gauge_->setText("TeTitle", request.heading);
        gauge_->setLabel("MlFileName", request.fileLine);
        gauge_->setPercentage(0);
        panel = gauge_.get();
    } else {
        animation_ = std::make_unique<PExternalModel>(request.name, request.title);
        animation_->setLabel("MlModelName", request.modelLine);
        animation_->setLabel("MlFileName", request.fileLine);
        animation_->step();
        panel = animation_.get();
    }
    // Modal for the whole program, but without a loop of its own: the operation's
    // loop is what serves the events, and it must not wait in a nested one.
    panel->window()->setWindowModality(Qt::ApplicationModal);
    panel->moveToCenter();
    panel->show();
    panel->window()->repaint();
}

void QtUserInterface::setPercentage(int percent) {
    if (gauge_) gauge_->setPercentage(percent);
}

void QtUserInterface::setProgressFileLine(const std::string& text) {
    if (Panel* panel = progressPanel()) {
        panel->setLabel("MlFileName", text);
        if (panel->window()) panel->window()->repaint();
    }
}

void QtUserInterface::stepAnimation() {
    if (animation_) animation_->step();
}

void QtUserInterface::drainEvents() { (void)EventQueue::drain(); }

bool QtUserInterface::stopRequested() {
    if (gauge_) return gauge_->continueRun == 0;
    if (animation_) return animation_->continueRun == 0;
    return false;
}

void QtUserInterface::requestStop() {
    if (gauge_) gauge_->stop();
    if (animation_) animation_->stop();
}

void QtUserInterface::endProgress() {
    if (gauge_) gauge_->hide();
    if (animation_) animation_->hide();
    gauge_.reset();
    animation_.reset();
}

void QtUserInterface::waitForPoll() {
    if (!QCoreApplication::instance()) return;
    QElapsedTimer clock;
    clock.start();
    // Sleeps until an event comes or the slice ends, serving what comes.
    while (clock.elapsed() < kPollMilliseconds && !stopRequested()) {
        const int left = kPollMilliseconds - static_cast<int>(clock.elapsed());
        if (left <= 0) break;
        QEventLoop wait;
        QTimer::singleShot(left, &wait, &QEventLoop::quit);
        wait.processEvents(QEventLoop::WaitForMoreEvents);
    }
}

void QtUserInterface::refreshWithoutInput() {
    if (QCoreApplication::instance()) QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

// ------------------------------------------------------------ panels

PanelOutcome QtUserInterface::editPrep(PrepConfiguration&, bool) { return PanelOutcome::Accepted; }

PanelOutcome QtUserInterface::selectModel(ModelConfiguration&, const FactorList&, bool) {
    return PanelOutcome::Accepted;
}

PanelOutcome QtUserInterface::linkFactors(InternalModel&, const FactorList&, bool) { return PanelOutcome::Accepted; }

PanelOutcome QtUserInterface::showSample(PrepConfiguration&, bool) { return PanelOutcome::Accepted; }

PanelOutcome QtUserInterface::postprocess(ProjectConfiguration&, bool) { return PanelOutcome::Accepted; }

PanelOutcome QtUserInterface::showLog(bool) {
    ::tarvex::showLog(parentWidget());
    return PanelOutcome::Accepted;
}

PanelOutcome QtUserInterface::showAbout(bool) {
    ::tarvex::showAbout(parentWidget());
    return PanelOutcome::Accepted;
}

PanelOutcome QtUserInterface::showHelpPanel(const std::string& name, bool) {
    ::tarvex::showHelpPanel(name, parentWidget());
    return PanelOutcome::Accepted;
}

}  // namespace tarvex
