#include "panels/layer/WidgetRegistry.h"

#include <map>

namespace tarvex {

namespace {

struct Entry {
    WidgetRegistry::Factory factory;
    GadgetKind kind;
};

std::map<std::string, Entry>& entries() {
    static std::map<std::string, Entry> table;
    return table;
}

}  // namespace

void WidgetRegistry::add(const std::string& className, Factory factory, GadgetKind kind) {
    entries()[className] = Entry{std::move(factory), kind};
}

QWidget* WidgetRegistry::create(const std::string& className, QWidget* parent) {
    const auto it = entries().find(className);
    return it == entries().end() || !it->second.factory ? nullptr : it->second.factory(parent);
}

GadgetKind WidgetRegistry::kindOf(const std::string& className) {
    const auto it = entries().find(className);
    return it == entries().end() ? GadgetKind::None : it->second.kind;
}

}  // namespace tarvex
