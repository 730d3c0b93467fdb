#include "panels/layer/Panel.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScreen>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextEdit>
#include <QTimer>
#include <QVBoxLayout>
#include <cstdio>
#include <utility>

#include "panels/layer/HelpSystem.h"
#include "panels/layer/PanelUiLoader.h"
#include "panels/layer/Print.h"
#include "panels/layer/SearchPath.h"

namespace tarvex {

// Watches the panel's window: the user's close, and the keys bound on the panel (key
// presses that no gadget took travel up to the window).
class PanelEvents : public QObject {
public:
    explicit PanelEvents(Panel* panel) : panel_(panel) {}

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched != panel_->window_) return false;
        if (event->type() == QEvent::Close) {
            if (panel_->modalRunning_) {
                panel_->endModal(0);
                return false;
            }
            if (panel_->destroyCallback_) {
                event->ignore();
                panel_->userClosed();
                return true;
            }
        } else if (event->type() == QEvent::KeyPress) {
            auto* key = static_cast<QKeyEvent*>(event);
            if (panel_->pressKey(key->key())) {
                key->accept();
                return true;
            }
        }
        return false;
    }

private:
    Panel* panel_;
};

namespace {

std::function<int(Panel&)>& modalHook() {
    static std::function<int(Panel&)> hook;
    return hook;
}

std::string prop(const QObject* o, const char* name) { return o->property(name).toString().toStdString(); }

}  // namespace

Panel::Panel(std::string name, std::string title, std::string fileName, int x, int y, int width, int height,
             QWidget* parent)
    : name_(std::move(name)), fileName_(std::move(fileName)) {
    load(parent);
    window_->setWindowTitle(QString::fromStdString(title));
    window_->move(x, y);
    window_->resize(width, height);
    keys_[Qt::Key_F1] = [this] { HelpSystem::openTopic(helpTopic()); };
}

Panel::~Panel() {
    if (window_) {
        window_->removeEventFilter(events_.get());
        delete window_.data();
    }
}

void Panel::load(QWidget* parent) {
    QWidget* w = nullptr;
    const std::string path = SearchPath::find(fileName_);
    if (path.empty()) {
        errorText_ = "Panel file " + fileName_ + " not found in the panel search path";
    } else {
        PanelUiLoader loader;
        loader.setWorkingDirectory(QFileInfo(QString::fromStdString(path)).absoluteDir());
        QFile file(QString::fromStdString(path));
        if (file.open(QIODevice::ReadOnly)) w = loader.load(&file, nullptr);
        if (!w) errorText_ = "Panel file " + path + " can't be loaded: " + loader.errorString().toStdString();
    }
    if (w) {
        loaded_ = true;
    } else {
        printLine(errorText_);
        w = new QWidget;
    }
    if (parent) w->setParent(parent, Qt::Window);
    window_ = w;
    events_ = std::make_unique<PanelEvents>(this);
    window_->installEventFilter(events_.get());
    if (loaded_ && !loadPages(window_, 0)) loaded_ = false;
    wireTree(window_);
}

// Notebook pages and other embedded panels name their own file in the property
// `panelFile`; their gadgets join this panel's.
int Panel::loadPages(QWidget* root, int depth) {
    if (depth > 8) return 0;  // a page that includes itself
    int ok = 1;
    const QList<QWidget*> hosts = root->findChildren<QWidget*>();
    for (QWidget* host : hosts) {
        const std::string file = prop(host, "panelFile");
        if (file.empty() || host->property("panelLoaded").toBool()) continue;
        host->setProperty("panelLoaded", true);
        const std::string path = SearchPath::find(file);
        QWidget* page = nullptr;
        if (!path.empty()) {
            PanelUiLoader loader;
            loader.setWorkingDirectory(QFileInfo(QString::fromStdString(path)).absoluteDir());
            QFile f(QString::fromStdString(path));
            if (f.open(QIODevice::ReadOnly)) page = loader.load(&f, host);
        }
        if (!page) {
            errorText_ = "Page file " + file + " of panel " + fileName_ + " can't be loaded";
            printLine(errorText_);
            ok = 0;
            continue;
        }
        auto* layout = host->layout();
        if (!layout) {
            layout = new QVBoxLayout(host);
            layout->setContentsMargins(0, 0, 0, 0);
        }
        layout->addWidget(page);
        if (!loadPages(page, depth + 1)) ok = 0;
    }
    return ok;
}

void Panel::wireTree(QWidget* root) {
    connectObject(root);
    const QList<QObject*> all = root->findChildren<QObject*>();
    for (QObject* o : all) connectObject(o);
}

void Panel::noteWired(const std::string& callback) {
    for (const std::string& w : wired_)
        if (w == callback) return;
    wired_.push_back(callback);
}

void Panel::connectObject(QObject* o) {
    const std::string cb = prop(o, "callback");
    const std::string dbl = prop(o, "doubleClickCallback");
    const std::string edit = prop(o, "editCallback");
    if (cb.empty() && dbl.empty() && edit.empty()) return;
    QObject* ctx = window_;
    auto fire = [this](std::string name) { return [this, name] { invokeCallback(name); }; };
    auto fireOn = [this](std::string name) {
        return [this, name](bool on) {
            if (on) invokeCallback(name);
        };
    };
    if (!cb.empty()) {
        noteWired(cb);
        if (auto* a = qobject_cast<QAction*>(o)) {
            QObject::connect(a, &QAction::triggered, ctx, fire(cb));
        } else if (auto* r = qobject_cast<QRadioButton*>(o)) {
            QObject::connect(r, &QRadioButton::toggled, ctx, fireOn(cb));
        } else if (auto* b = qobject_cast<QAbstractButton*>(o)) {
            QObject::connect(b, &QAbstractButton::clicked, ctx, fire(cb));
        } else if (auto* l = qobject_cast<QLineEdit*>(o)) {
            QObject::connect(l, &QLineEdit::returnPressed, ctx, fire(cb));
        } else if (auto* t = qobject_cast<QPlainTextEdit*>(o)) {
            QObject::connect(t, &QPlainTextEdit::textChanged, ctx, fire(cb));
        } else if (auto* te = qobject_cast<QTextEdit*>(o)) {
            QObject::connect(te, &QTextEdit::textChanged, ctx, fire(cb));
        } else if (auto* c = qobject_cast<QComboBox*>(o)) {
            QObject::connect(c, &QComboBox::currentIndexChanged, ctx, fire(cb));
        } else if (auto* lw = qobject_cast<QListWidget*>(o)) {
            QObject::connect(lw, &QListWidget::itemSelectionChanged, ctx, fire(cb));
        } else if (auto* tw = qobject_cast<QTableWidget*>(o)) {
            QObject::connect(tw, &QTableWidget::cellClicked, ctx, fire(cb));
        } else if (auto* tab = qobject_cast<QTabWidget*>(o)) {
            QObject::connect(tab, &QTabWidget::currentChanged, ctx, fire(cb));
        } else if (auto* w = qobject_cast<QWidget*>(o)) {
            // A selector: the callback fires when one of its radio buttons becomes checked.
            const QList<QRadioButton*> radios = w->findChildren<QRadioButton*>(QString(), Qt::FindDirectChildrenOnly);
            for (QRadioButton* r : radios) QObject::connect(r, &QRadioButton::toggled, ctx, fireOn(cb));
        }
    }
    if (!dbl.empty()) {
        noteWired(dbl);
        if (auto* lw = qobject_cast<QListWidget*>(o))
            QObject::connect(lw, &QListWidget::itemDoubleClicked, ctx, fire(dbl));
        else if (auto* tw = qobject_cast<QTableWidget*>(o))
            QObject::connect(tw, &QTableWidget::cellDoubleClicked, ctx, fire(dbl));
    }
    if (!edit.empty()) {
        noteWired(edit);
        if (auto* tw = qobject_cast<QTableWidget*>(o))
            QObject::connect(tw, &QTableWidget::cellChanged, ctx, fire(edit));
        else if (auto* l = qobject_cast<QLineEdit*>(o))
            QObject::connect(l, &QLineEdit::textEdited, ctx, fire(edit));
    }
}

void Panel::registerCallback(const std::string& name, std::function<void()> fn) { callbacks_[name] = std::move(fn); }

void Panel::invokeCallback(const std::string& name) {
    auto it = callbacks_.find(name);
    if (it == callbacks_.end() || !it->second) {
        traceCallback(name);
        return;
    }
    // A copy: the callback may register callbacks anew or end the panel's wait.
    std::function<void()> fn = it->second;
    fn();
}

void Panel::traceCallback(const std::string& callback) const {
    std::string line = " " + name_ + " : " + callback + " method ...";
    printLine(line);
}

void Panel::setDestroyCallback(std::function<void(Panel&)> fn) { destroyCallback_ = std::move(fn); }

// The destroy callback usually deletes the panel, which must not happen while the
// window is still inside its own close event: it runs once the event is done.
void Panel::userClosed() {
    QPointer<QWidget> guard = window_;
    QTimer::singleShot(0, window_, [this, guard] {
        if (guard && destroyCallback_) {
            auto fn = destroyCallback_;
            fn(*this);
        }
    });
}

void Panel::bindKey(int qtKey, std::function<void()> fn) { keys_[qtKey] = std::move(fn); }

int Panel::pressKey(int qtKey) {
    auto it = keys_.find(qtKey);
    if (it == keys_.end() || !it->second) return 0;
    auto fn = it->second;
    fn();
    return 1;
}

std::string Panel::helpTopic() const { return QFileInfo(QString::fromStdString(fileName_)).completeBaseName().toStdString(); }

void Panel::show() {
    window_->show();
    window_->raise();
}

void Panel::hide() { window_->hide(); }

int Panel::isShown() const { return window_->isVisible() ? 1 : 0; }

void Panel::moveToCenter() {
    QScreen* screen = window_->screen() ? window_->screen() : QGuiApplication::primaryScreen();
    if (!screen) return;
    const QRect area = screen->availableGeometry();
    const QSize size = window_->frameGeometry().size();
    window_->move(area.center() - QPoint(size.width() / 2, size.height() / 2));
}

void Panel::setTitle(const std::string& title) { window_->setWindowTitle(QString::fromStdString(title)); }

std::string Panel::title() const { return window_->windowTitle().toStdString(); }

void Panel::setFixedSize(int width, int height) { window_->setFixedSize(width, height); }

void Panel::resize(int width, int height) { window_->resize(width, height); }

void Panel::setBackground(const std::string& colourName) {
    QPalette pal = window_->palette();
    pal.setColor(QPalette::Window, QColor(QString::fromStdString(colourName)));
    window_->setPalette(pal);
    window_->setAutoFillBackground(true);
}

void Panel::setModalHook(std::function<int(Panel&)> hook) { modalHook() = std::move(hook); }

int Panel::showModal() {
    modalResult_ = 0;
    modalRunning_ = true;
    if (modalHook()) {
        show();
        const int r = modalHook()(*this);
        if (modalRunning_) endModal(r);
        return modalResult_;
    }
    window_->setWindowModality(Qt::ApplicationModal);
    show();
    QEventLoop loop;
    modalLoop_ = &loop;
    if (modalRunning_) loop.exec();
    modalLoop_ = nullptr;
    return modalResult_;
}

void Panel::endModal(int result) {
    modalResult_ = result;
    if (!modalRunning_) return;
    modalRunning_ = false;
    if (window_) hide();
    if (modalLoop_) modalLoop_->quit();
}

}  // namespace tarvex
