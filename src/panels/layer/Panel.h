#pragma once
// A panel: a top-level window loaded at run time from its .ui file, holding gadgets
// reached by name. Widgets that carry the dynamic property `callback` fire the callback
// of that name through their natural signal; a panel class registers the callbacks it
// implements, and any other name prints the trace line " <panel> : <callback> method ...".
//
// Gadget operations never fire callbacks: a callback answers the user, not the program.
#include <QPixmap>
#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "panels/layer/GadgetKind.h"

class QAction;
class QEventLoop;
class QObject;

namespace tarvex {

class PanelEvents;

// How a matrix cell holds its value: a label (read-only), a label drawn on a filled
// background (read-only), or an editable double or integer.
enum class MatrixItemKind { Label, FilledLabel, Double, Int };

enum class ButtonState { Sensitive, Insensitive };

class Panel {
public:
    // Loads `fileName` (for example "PMainPanel.ui") through the search path and places
    // the window at (x, y) with the nominal size. A panel file that can't be loaded
    // leaves an empty window and isLoaded() 0 (with errorText), so that nothing crashes.
    Panel(std::string name, std::string title, std::string fileName, int x, int y, int width, int height,
          QWidget* parent = nullptr);
    virtual ~Panel();
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;

    const std::string& name() const { return name_; }
    const std::string& fileName() const { return fileName_; }
    int isLoaded() const { return loaded_ ? 1 : 0; }
    const std::string& errorText() const { return errorText_; }
    QWidget* window() const { return window_.data(); }

    // --- gadgets by name
    QObject* getObject(const std::string& name) const;
    QWidget* getGadget(const std::string& name) const;
    GadgetKind kindOf(const std::string& name) const { return gadgetKindOf(getObject(name)); }

    // --- callbacks
    void registerCallback(const std::string& name, std::function<void()> fn);
    // What the user's action does: the registered function, else the trace line.
    void invokeCallback(const std::string& name);
    void traceCallback(const std::string& name) const;
    // Callback names the panel file wires, each once, in the order found.
    const std::vector<std::string>& wiredCallbacks() const { return wired_; }

    // Called when the user closes the window; the close itself is then left to it.
    void setDestroyCallback(std::function<void(Panel&)> fn);
    void bindKey(int qtKey, std::function<void()> fn);
    int pressKey(int qtKey);  // runs the binding as the key would; 1 if one exists
    // The page of the help set that F1 opens on this panel (its file's stem by default).
    virtual std::string helpTopic() const;

    // --- the window
    void show();
    void hide();
    int isShown() const;
    void moveToCenter();
    void setTitle(const std::string& title);
    std::string title() const;
    void setFixedSize(int width, int height);
    void resize(int width, int height);
    void setBackground(const std::string& colourName);

    // Shows the panel modally and waits until endModal(); a window closed by the user
    // ends the wait with 0. Returns the result field.
    int showModal();
    void endModal(int result);
    int modalResult() const { return modalResult_; }
    bool isModalRunning() const { return modalRunning_; }
    // Tests replace the blocking wait: the hook runs in its place and returns the result.
    static void setModalHook(std::function<int(Panel&)> hook);

    // --- every gadget
    int setSensitive(const std::string& name, bool sensitive);
    int isSensitive(const std::string& name) const;
    int redraw(const std::string& name);
    int setVisible(const std::string& name, bool visible, bool redraw = true);
    int isVisible(const std::string& name) const;  // not hidden explicitly

    // --- labels and text fields (message label, button, text field, number field)
    int setLabel(const std::string& name, const std::string& text, bool redraw = true);
    std::string getLabel(const std::string& name) const;

    // --- number fields: 1 and the value, or 0 when the text doesn't parse whole
    int getInt(const std::string& name, long& value) const;
    int getFloat(const std::string& name, double& value) const;
    int setInt(const std::string& name, long value);
    int setFloat(const std::string& name, double value);

    // --- texts
    int setText(const std::string& name, const std::string& text);
    int appendText(const std::string& name, const std::string& line);
    std::string getText(const std::string& name) const;

    // --- toggles
    int setToggle(const std::string& name, bool state);
    int getToggle(const std::string& name) const;  // 1, 0, or -1 for no toggle

    // --- selectors: the index of the checked radio button, in file order; -1 none
    int selectorIndex(const std::string& name) const;
    int setSelectorIndex(const std::string& name, int index);

    // --- option menus, combo boxes and string lists
    int addItem(const std::string& name, const std::string& text);
    int insertItem(const std::string& name, int index, const std::string& text);
    int removeItem(const std::string& name, int index);
    int clearItems(const std::string& name);
    int setItems(const std::string& name, const std::vector<std::string>& items);
    int itemCount(const std::string& name) const;
    std::string itemText(const std::string& name, int index) const;
    int selectedIndex(const std::string& name) const;  // the first selected; -1 none
    std::vector<int> selectedIndices(const std::string& name) const;
    int setSelected(const std::string& name, int index, bool selected = true);
    int setItemText(const std::string& name, int index, const std::string& text);

    // --- matrices
    int setMatrixSize(const std::string& name, int rows, int columns);
    int rowCount(const std::string& name) const;
    int columnCount(const std::string& name) const;
    int setCell(const std::string& name, int row, int column, const std::string& text,
                MatrixItemKind kind = MatrixItemKind::Label);
    int setCellDouble(const std::string& name, int row, int column, double value);
    int setCellInt(const std::string& name, int row, int column, long value);
    std::string cellText(const std::string& name, int row, int column) const;
    int cellDouble(const std::string& name, int row, int column, double& value) const;
    int cellInt(const std::string& name, int row, int column, long& value) const;
    int cellKind(const std::string& name, int row, int column, MatrixItemKind& kind) const;
    int setHeader(const std::string& name, bool horizontal, int index, const std::string& text);
    int selectedCell(const std::string& name, int& row, int& column) const;
    int selectCell(const std::string& name, int row, int column);

    // --- notebooks
    int pageCount(const std::string& name) const;
    int currentPage(const std::string& name) const;
    int setCurrentPage(const std::string& name, int index);

    // --- menu bars: item `item` of menu `menu`, both from 0, separators not counted
    QAction* menuItem(const std::string& menuBar, int menu, int item) const;
    int setMenuItemSensitive(const std::string& menuBar, int menu, int item, bool sensitive);
    int isMenuItemSensitive(const std::string& menuBar, int menu, int item) const;
    // Popup menus (a QMenu by name): items by index in the same way.
    QAction* popupItem(const std::string& popup, int item) const;
    int setPopupItemSensitive(const std::string& popup, int item, bool sensitive);

    // --- pictures
    int setBitmap(const std::string& name, const std::string& bitmapName);  // icons
    int setBitmap(const std::string& name, const QPixmap& pixmap);
    int setButtonBitmap(const std::string& name, const std::string& bitmapName, ButtonState state);

    // --- gauges
    int setGaugeValue(const std::string& name, int value);
    int gaugeValue(const std::string& name) const;

protected:
    // Finds and wires the widgets of a loaded subtree (the window, or a notebook page).
    void wireTree(QWidget* root);

private:
    friend class PanelEvents;
    void load(QWidget* parent);
    int loadPages(QWidget* root, int depth);
    void connectObject(QObject* object);
    void noteWired(const std::string& callback);
    void userClosed();

    std::string name_;
    std::string fileName_;
    std::string errorText_ = "No errors";
    bool loaded_ = false;
    QPointer<QWidget> window_;
    std::unique_ptr<PanelEvents> events_;
    std::map<std::string, std::function<void()>> callbacks_;
    std::vector<std::string> wired_;
    std::map<int, std::function<void()>> keys_;
    std::function<void(Panel&)> destroyCallback_;
    int modalResult_ = 0;
    bool modalRunning_ = false;
    QEventLoop* modalLoop_ = nullptr;  // the loop of a running modal wait
};

}  // namespace tarvex
