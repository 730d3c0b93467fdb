// The gadget operations of Panel: each finds its gadget by name, returns 0 when there
// is none of a fitting kind, and changes it without firing its callback.
#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QTabWidget>
#include <QTableWidget>
#include <QTextEdit>
#include <QWidget>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "panels/layer/Bitmaps.h"
#include "panels/layer/Panel.h"

namespace tarvex {

namespace {

template <class T>
T* as(const Panel& p, const std::string& name) {
    return qobject_cast<T*>(p.getObject(name));
}

QString qs(const std::string& s) { return QString::fromStdString(s); }

std::string formatDouble(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%g", v);
    return buf;
}

// Whole-text parses, independent of the process's locale; blanks around are allowed.
bool parseLong(const QString& text, long& out) {
    const std::string s = text.trimmed().toStdString();
    if (s.empty()) return false;
    const char* b = s.data();
    const char* e = b + s.size();
    if (*b == '+') ++b;
    long v = 0;
    auto [ptr, ec] = std::from_chars(b, e, v);
    if (ec != std::errc() || ptr != e) return false;
    out = v;
    return true;
}

bool parseDouble(const QString& text, double& out) {
    const std::string s = text.trimmed().toStdString();
    if (s.empty()) return false;
    const char* b = s.data();
    const char* e = b + s.size();
    if (*b == '+') ++b;
    double v = 0;
    auto [ptr, ec] = std::from_chars(b, e, v);
    if (ec != std::errc() || ptr != e || !std::isfinite(v)) return false;
    out = v;
    return true;
}

QList<QRadioButton*> selectorEntries(QWidget* w) {
    return w->findChildren<QRadioButton*>(QString(), Qt::FindDirectChildrenOnly);
}

constexpr int kKindRole = Qt::UserRole + 1;

QMenu* menuAt(QMenuBar* bar, int index) {
    int i = 0;
    for (QAction* a : bar->actions()) {
        if (!a->menu()) continue;
        if (i++ == index) return a->menu();
    }
    return nullptr;
}

}  // namespace

QObject* Panel::getObject(const std::string& name) const {
    if (!window_ || name.empty()) return nullptr;
    const QString n = qs(name);
    if (window_->objectName() == n) return window_;
    return window_->findChild<QObject*>(n);
}

QWidget* Panel::getGadget(const std::string& name) const { return qobject_cast<QWidget*>(getObject(name)); }

int Panel::setSensitive(const std::string& name, bool sensitive) {
    QObject* o = getObject(name);
    if (auto* w = qobject_cast<QWidget*>(o)) {
        w->setEnabled(sensitive);
        return 1;
    }
    if (auto* a = qobject_cast<QAction*>(o)) {
        a->setEnabled(sensitive);
        return 1;
    }
    return 0;
}

int Panel::isSensitive(const std::string& name) const {
    QObject* o = getObject(name);
    if (auto* w = qobject_cast<QWidget*>(o)) return w->isEnabled() ? 1 : 0;
    if (auto* a = qobject_cast<QAction*>(o)) return a->isEnabled() ? 1 : 0;
    return 0;
}

int Panel::redraw(const std::string& name) {
    QWidget* w = getGadget(name);
    if (!w) return 0;
    w->update();
    return 1;
}

int Panel::setVisible(const std::string& name, bool visible, bool redrawNow) {
    QWidget* w = getGadget(name);
    if (!w) return 0;
    w->setVisible(visible);
    if (redrawNow && w->parentWidget()) w->parentWidget()->update();
    return 1;
}

int Panel::isVisible(const std::string& name) const {
    QWidget* w = getGadget(name);
    return (w && !w->isHidden()) ? 1 : 0;
}

int Panel::setLabel(const std::string& name, const std::string& text, bool redrawNow) {
    QObject* o = getObject(name);
    const QString t = qs(text);
    if (auto* l = qobject_cast<QLabel*>(o)) l->setText(t);
    else if (auto* b = qobject_cast<QAbstractButton*>(o)) b->setText(t);
    else if (auto* e = qobject_cast<QLineEdit*>(o)) {
        QSignalBlocker block(e);
        e->setText(t);
    } else if (auto* g = qobject_cast<QGroupBox*>(o)) g->setTitle(t);
    else if (auto* a = qobject_cast<QAction*>(o)) a->setText(t);
    else return 0;
    if (redrawNow) redraw(name);
    return 1;
}

std::string Panel::getLabel(const std::string& name) const {
    QObject* o = getObject(name);
    if (auto* l = qobject_cast<QLabel*>(o)) return l->text().toStdString();
    if (auto* b = qobject_cast<QAbstractButton*>(o)) return b->text().toStdString();
    if (auto* e = qobject_cast<QLineEdit*>(o)) return e->text().toStdString();
    if (auto* g = qobject_cast<QGroupBox*>(o)) return g->title().toStdString();
    if (auto* a = qobject_cast<QAction*>(o)) return a->text().toStdString();
    return {};
}

int Panel::getInt(const std::string& name, long& value) const {
    auto* e = as<QLineEdit>(*this, name);
    return (e && parseLong(e->text(), value)) ? 1 : 0;
}

int Panel::getFloat(const std::string& name, double& value) const {
    auto* e = as<QLineEdit>(*this, name);
    return (e && parseDouble(e->text(), value)) ? 1 : 0;
}

int Panel::setInt(const std::string& name, long value) { return setLabel(name, std::to_string(value)); }

int Panel::setFloat(const std::string& name, double value) { return setLabel(name, formatDouble(value)); }

int Panel::setText(const std::string& name, const std::string& text) {
    QObject* o = getObject(name);
    if (auto* t = qobject_cast<QPlainTextEdit*>(o)) {
        QSignalBlocker block(t);
        t->setPlainText(qs(text));
        return 1;
    }
    if (auto* te = qobject_cast<QTextEdit*>(o)) {
        QSignalBlocker block(te);
        te->setPlainText(qs(text));
        return 1;
    }
    return setLabel(name, text);
}

int Panel::appendText(const std::string& name, const std::string& line) {
    QObject* o = getObject(name);
    if (auto* t = qobject_cast<QPlainTextEdit*>(o)) {
        QSignalBlocker block(t);
        t->appendPlainText(qs(line));
        return 1;
    }
    if (auto* te = qobject_cast<QTextEdit*>(o)) {
        QSignalBlocker block(te);
        te->append(qs(line));
        return 1;
    }
    return 0;
}

std::string Panel::getText(const std::string& name) const {
    QObject* o = getObject(name);
    if (auto* t = qobject_cast<QPlainTextEdit*>(o)) return t->toPlainText().toStdString();
    if (auto* te = qobject_cast<QTextEdit*>(o)) return te->toPlainText().toStdString();
    return getLabel(name);
}

int Panel::setToggle(const std::string& name, bool state) {
    auto* b = as<QAbstractButton>(*this, name);
    if (!b || !b->isCheckable()) return 0;
    QSignalBlocker block(b);
    b->setChecked(state);
    return 1;
}

int Panel::getToggle(const std::string& name) const {
    auto* b = as<QAbstractButton>(*this, name);
    if (!b || !b->isCheckable()) return -1;
    return b->isChecked() ? 1 : 0;
}

int Panel::selectorIndex(const std::string& name) const {
    QWidget* w = getGadget(name);
    if (!w) return -1;
    const QList<QRadioButton*> entries = selectorEntries(w);
    for (int i = 0; i < entries.size(); ++i)
        if (entries[i]->isChecked()) return i;
    return -1;
}

int Panel::setSelectorIndex(const std::string& name, int index) {
    QWidget* w = getGadget(name);
    if (!w) return 0;
    const QList<QRadioButton*> entries = selectorEntries(w);
    if (index < -1 || index >= entries.size() || entries.isEmpty()) return 0;
    for (int i = 0; i < entries.size(); ++i) {
        QSignalBlocker block(entries[i]);
        const bool exclusive = entries[i]->autoExclusive();
        entries[i]->setAutoExclusive(false);
        entries[i]->setChecked(i == index);
        entries[i]->setAutoExclusive(exclusive);
    }
    return 1;
}

int Panel::addItem(const std::string& name, const std::string& text) {
    return insertItem(name, itemCount(name), text);
}

int Panel::insertItem(const std::string& name, int index, const std::string& text) {
    QObject* o = getObject(name);
    if (auto* c = qobject_cast<QComboBox*>(o)) {
        if (index < 0 || index > c->count()) return 0;
        QSignalBlocker block(c);
        c->insertItem(index, qs(text));
        return 1;
    }
    if (auto* l = qobject_cast<QListWidget*>(o)) {
        if (index < 0 || index > l->count()) return 0;
        QSignalBlocker block(l);
        l->insertItem(index, qs(text));
        return 1;
    }
    return 0;
}

int Panel::removeItem(const std::string& name, int index) {
    QObject* o = getObject(name);
    if (auto* c = qobject_cast<QComboBox*>(o)) {
        if (index < 0 || index >= c->count()) return 0;
        QSignalBlocker block(c);
        c->removeItem(index);
        return 1;
    }
    if (auto* l = qobject_cast<QListWidget*>(o)) {
        if (index < 0 || index >= l->count()) return 0;
        QSignalBlocker block(l);
        delete l->takeItem(index);
        return 1;
    }
    return 0;
}

int Panel::clearItems(const std::string& name) {
    QObject* o = getObject(name);
    if (auto* c = qobject_cast<QComboBox*>(o)) {
        QSignalBlocker block(c);
        c->clear();
        return 1;
    }
    if (auto* l = qobject_cast<QListWidget*>(o)) {
        QSignalBlocker block(l);
        l->clear();
        return 1;
    }
    return 0;
}

int Panel::setItems(const std::string& name, const std::vector<std::string>& items) {
    if (!clearItems(name)) return 0;
    for (const std::string& s : items) addItem(name, s);
    return 1;
}

int Panel::itemCount(const std::string& name) const {
    QObject* o = getObject(name);
    if (auto* c = qobject_cast<QComboBox*>(o)) return c->count();
    if (auto* l = qobject_cast<QListWidget*>(o)) return l->count();
    return 0;
}

std::string Panel::itemText(const std::string& name, int index) const {
    QObject* o = getObject(name);
    if (auto* c = qobject_cast<QComboBox*>(o)) return (index >= 0 && index < c->count()) ? c->itemText(index).toStdString() : "";
    if (auto* l = qobject_cast<QListWidget*>(o))
        return (index >= 0 && index < l->count()) ? l->item(index)->text().toStdString() : "";
    return {};
}

int Panel::setItemText(const std::string& name, int index, const std::string& text) {
    QObject* o = getObject(name);
    if (auto* c = qobject_cast<QComboBox*>(o)) {
        if (index < 0 || index >= c->count()) return 0;
        QSignalBlocker block(c);
        c->setItemText(index, qs(text));
        return 1;
    }
    if (auto* l = qobject_cast<QListWidget*>(o)) {
        if (index < 0 || index >= l->count()) return 0;
        l->item(index)->setText(qs(text));
        return 1;
    }
    return 0;
}

int Panel::selectedIndex(const std::string& name) const {
    const std::vector<int> sel = selectedIndices(name);
    return sel.empty() ? -1 : sel.front();
}

std::vector<int> Panel::selectedIndices(const std::string& name) const {
    std::vector<int> out;
    QObject* o = getObject(name);
    if (auto* c = qobject_cast<QComboBox*>(o)) {
        if (c->currentIndex() >= 0) out.push_back(c->currentIndex());
    } else if (auto* l = qobject_cast<QListWidget*>(o)) {
        for (int i = 0; i < l->count(); ++i)
            if (l->item(i)->isSelected()) out.push_back(i);
    }
    return out;
}

int Panel::setSelected(const std::string& name, int index, bool selected) {
    QObject* o = getObject(name);
    if (auto* c = qobject_cast<QComboBox*>(o)) {
        if (index < -1 || index >= c->count()) return 0;
        QSignalBlocker block(c);
        c->setCurrentIndex(selected ? index : -1);
        return 1;
    }
    if (auto* l = qobject_cast<QListWidget*>(o)) {
        if (index < 0 || index >= l->count()) return 0;
        QSignalBlocker block(l);
        if (selected && l->selectionMode() == QAbstractItemView::SingleSelection) l->clearSelection();
        l->item(index)->setSelected(selected);
        if (selected) l->setCurrentRow(index, QItemSelectionModel::NoUpdate);
        return 1;
    }
    return 0;
}

int Panel::setMatrixSize(const std::string& name, int rows, int columns) {
    auto* t = as<QTableWidget>(*this, name);
    if (!t || rows < 0 || columns < 0) return 0;
    QSignalBlocker block(t);
    t->setRowCount(rows);
    t->setColumnCount(columns);
    return 1;
}

int Panel::rowCount(const std::string& name) const {
    auto* t = as<QTableWidget>(*this, name);
    return t ? t->rowCount() : 0;
}

int Panel::columnCount(const std::string& name) const {
    auto* t = as<QTableWidget>(*this, name);
    return t ? t->columnCount() : 0;
}

int Panel::setCell(const std::string& name, int row, int column, const std::string& text, MatrixItemKind kind) {
    auto* t = as<QTableWidget>(*this, name);
    if (!t || row < 0 || column < 0 || row >= t->rowCount() || column >= t->columnCount()) return 0;
    QSignalBlocker block(t);
    auto* item = new QTableWidgetItem(qs(text));
    item->setData(kKindRole, static_cast<int>(kind));
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    switch (kind) {
        case MatrixItemKind::Label: break;
        case MatrixItemKind::FilledLabel: item->setBackground(QColor(210, 214, 222)); break;
        case MatrixItemKind::Double:
        case MatrixItemKind::Int:
            flags |= Qt::ItemIsEditable;
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            break;
    }
    item->setFlags(flags);
    t->setItem(row, column, item);
    return 1;
}

int Panel::setCellDouble(const std::string& name, int row, int column, double value) {
    return setCell(name, row, column, formatDouble(value), MatrixItemKind::Double);
}

int Panel::setCellInt(const std::string& name, int row, int column, long value) {
    return setCell(name, row, column, std::to_string(value), MatrixItemKind::Int);
}

std::string Panel::cellText(const std::string& name, int row, int column) const {
    auto* t = as<QTableWidget>(*this, name);
    if (!t) return {};
    QTableWidgetItem* item = t->item(row, column);
    return item ? item->text().toStdString() : std::string();
}

int Panel::cellDouble(const std::string& name, int row, int column, double& value) const {
    auto* t = as<QTableWidget>(*this, name);
    QTableWidgetItem* item = t ? t->item(row, column) : nullptr;
    return (item && parseDouble(item->text(), value)) ? 1 : 0;
}

int Panel::cellInt(const std::string& name, int row, int column, long& value) const {
    auto* t = as<QTableWidget>(*this, name);
    QTableWidgetItem* item = t ? t->item(row, column) : nullptr;
    return (item && parseLong(item->text(), value)) ? 1 : 0;
}

int Panel::cellKind(const std::string& name, int row, int column, MatrixItemKind& kind) const {
    auto* t = as<QTableWidget>(*this, name);
    QTableWidgetItem* item = t ? t->item(row, column) : nullptr;
    if (!item) return 0;
    kind = static_cast<MatrixItemKind>(item->data(kKindRole).toInt());
    return 1;
}

int Panel::setHeader(const std::string& name, bool horizontal, int index, const std::string& text) {
    auto* t = as<QTableWidget>(*this, name);
    if (!t || index < 0 || index >= (horizontal ? t->columnCount() : t->rowCount())) return 0;
    auto* item = new QTableWidgetItem(qs(text));
    if (horizontal) t->setHorizontalHeaderItem(index, item);
    else t->setVerticalHeaderItem(index, item);
    return 1;
}

int Panel::selectedCell(const std::string& name, int& row, int& column) const {
    auto* t = as<QTableWidget>(*this, name);
    if (!t || t->currentRow() < 0 || t->currentColumn() < 0) return 0;
    row = t->currentRow();
    column = t->currentColumn();
    return 1;
}

int Panel::selectCell(const std::string& name, int row, int column) {
    auto* t = as<QTableWidget>(*this, name);
    if (!t || row < 0 || column < 0 || row >= t->rowCount() || column >= t->columnCount()) return 0;
    QSignalBlocker block(t);
    t->setCurrentCell(row, column);
    return 1;
}

int Panel::pageCount(const std::string& name) const {
    auto* t = as<QTabWidget>(*this, name);
    return t ? t->count() : 0;
}

int Panel::currentPage(const std::string& name) const {
    auto* t = as<QTabWidget>(*this, name);
    return t ? t->currentIndex() : -1;
}

int Panel::setCurrentPage(const std::string& name, int index) {
    auto* t = as<QTabWidget>(*this, name);
    if (!t || index < 0 || index >= t->count()) return 0;
    QSignalBlocker block(t);
    t->setCurrentIndex(index);
    return 1;
}

// Separators count as items, as they do in the menus' files.
QAction* Panel::menuItem(const std::string& menuBar, int menu, int item) const {
    auto* bar = as<QMenuBar>(*this, menuBar);
    QMenu* m = bar ? menuAt(bar, menu) : nullptr;
    if (!m) return nullptr;
    const QList<QAction*> items = m->actions();
    return (item >= 0 && item < items.size()) ? items[item] : nullptr;
}

int Panel::setMenuItemSensitive(const std::string& menuBar, int menu, int item, bool sensitive) {
    QAction* a = menuItem(menuBar, menu, item);
    if (!a) return 0;
    a->setEnabled(sensitive);
    return 1;
}

int Panel::isMenuItemSensitive(const std::string& menuBar, int menu, int item) const {
    QAction* a = menuItem(menuBar, menu, item);
    return (a && a->isEnabled()) ? 1 : 0;
}

QAction* Panel::popupItem(const std::string& popup, int item) const {
    auto* m = as<QMenu>(*this, popup);
    if (!m) return nullptr;
    const QList<QAction*> items = m->actions();
    return (item >= 0 && item < items.size()) ? items[item] : nullptr;
}

int Panel::setPopupItemSensitive(const std::string& popup, int item, bool sensitive) {
    QAction* a = popupItem(popup, item);
    if (!a) return 0;
    a->setEnabled(sensitive);
    return 1;
}

int Panel::setBitmap(const std::string& name, const std::string& bitmapName) {
    return setBitmap(name, Bitmaps::read(bitmapName));
}

int Panel::setBitmap(const std::string& name, const QPixmap& pixmap) {
    QObject* o = getObject(name);
    if (auto* l = qobject_cast<QLabel*>(o)) {
        l->setPixmap(pixmap);
        return pixmap.isNull() ? 0 : 1;
    }
    if (auto* b = qobject_cast<QAbstractButton*>(o)) {
        b->setIcon(QIcon(pixmap));
        if (!pixmap.isNull()) b->setIconSize(pixmap.size());
        return pixmap.isNull() ? 0 : 1;
    }
    return 0;
}

int Panel::setButtonBitmap(const std::string& name, const std::string& bitmapName, ButtonState state) {
    auto* b = as<QAbstractButton>(*this, name);
    if (!b) return 0;
    const QPixmap pix = Bitmaps::read(bitmapName);
    if (pix.isNull()) return 0;
    QIcon icon = b->icon();
    icon.addPixmap(pix, state == ButtonState::Insensitive ? QIcon::Disabled : QIcon::Normal);
    b->setIcon(icon);
    b->setIconSize(pix.size());
    return 1;
}

int Panel::setGaugeValue(const std::string& name, int value) {
    auto* g = as<QProgressBar>(*this, name);
    if (!g) return 0;
    g->setValue(std::clamp(value, g->minimum(), g->maximum()));
    g->repaint();
    return 1;
}

int Panel::gaugeValue(const std::string& name) const {
    auto* g = as<QProgressBar>(*this, name);
    return g ? g->value() : -1;
}

}  // namespace tarvex
