#include "correlation/DependenceTree.h"

#include <algorithm>
#include <istream>
#include <ostream>

namespace tarvex {

void DependenceTree::addNode(const std::string& factorName) {
    CorrelationNode n;
    n.factorName = factorName;
    nodes_.push_back(std::move(n));
}

void DependenceTree::rename(int i, const std::string& factorName) {
    if (i >= 0 && i < size()) nodes_[static_cast<std::size_t>(i)].factorName = factorName;
}

void DependenceTree::removeNode(int i) {
    if (i < 0 || i >= size()) return;
    unlink(i);
    nodes_.erase(nodes_.begin() + i);
    auto renumber = [i](int& index) {
        if (index > i) --index;
    };
    for (CorrelationNode& n : nodes_) {
        renumber(n.parent);
        for (int& c : n.children) renumber(c);
    }
}

int DependenceTree::isLinked(int i) const {
    if (i < 0 || i >= size()) return 0;
    const CorrelationNode& n = node(i);
    return n.parent >= 0 || !n.children.empty() ? 1 : 0;
}

int DependenceTree::isDescendant(int candidate, int ancestor) const {
    if (candidate < 0 || candidate >= size() || ancestor < 0 || ancestor >= size()) return 0;
    // The forest has no cycle, so the walk up ends within size() steps.
    for (int p = node(candidate).parent, steps = 0; p >= 0 && steps <= size(); p = node(p).parent, ++steps) {
        if (p == ancestor) return 1;
    }
    return 0;
}

int DependenceTree::checkCorrelation(double value, std::string& errorText) {
    if (!(value >= -1.0 && value <= 1.0) || value == 0.0) {
        errorText = kCorrelationRangeText;
        return 0;
    }
    return 1;
}

void DependenceTree::detachFromParent(int i) {
    CorrelationNode& n = nodes_[static_cast<std::size_t>(i)];
    if (n.parent >= 0) {
        auto& siblings = nodes_[static_cast<std::size_t>(n.parent)].children;
        siblings.erase(std::remove(siblings.begin(), siblings.end(), i), siblings.end());
    }
    n.parent = -1;
    n.correlation = 0.0;
}

int DependenceTree::link(int child, int parent, double correlation, std::string& errorText) {
    if (child < 0 || child >= size() || parent < 0 || parent >= size()) {
        errorText = "No such factor in the correlation tree";
        return 0;
    }
    if (!checkCorrelation(correlation, errorText)) return 0;
    if (child == parent) return 1;
    if (isDescendant(parent, child)) {
        errorText = kCyclicCorrelationText;
        return 0;
    }
    detachFromParent(child);
    CorrelationNode& c = nodes_[static_cast<std::size_t>(child)];
    c.parent = parent;
    c.correlation = correlation;
    nodes_[static_cast<std::size_t>(parent)].children.push_back(child);
    return 1;
}

int DependenceTree::moveLink(int child, int parent, std::string& errorText) {
    if (child < 0 || child >= size()) {
        errorText = "No such factor in the correlation tree";
        return 0;
    }
    return link(child, parent, node(child).correlation, errorText);
}

void DependenceTree::unlink(int i) {
    if (i < 0 || i >= size()) return;
    detachFromParent(i);
    for (int c : nodes_[static_cast<std::size_t>(i)].children) {
        nodes_[static_cast<std::size_t>(c)].parent = -1;
        nodes_[static_cast<std::size_t>(c)].correlation = 0.0;
    }
    nodes_[static_cast<std::size_t>(i)].children.clear();
}

int DependenceTree::setCorrelation(int i, double value, std::string& errorText) {
    if (i < 0 || i >= size() || node(i).parent < 0) {
        errorText = "No such link in the correlation tree";
        return 0;
    }
    if (!checkCorrelation(value, errorText)) return 0;
    nodes_[static_cast<std::size_t>(i)].correlation = value;
    return 1;
}

void DependenceTree::write(std::ostream& out) const {
    for (const CorrelationNode& n : nodes_) {
        out << n.correlation << ' ' << n.parent << ' ' << n.children.size() << ' ';
        for (int c : n.children) out << c << ' ';
        out << '\n';
    }
}

int DependenceTree::read(std::istream& in) {
    const int n = size();
    std::vector<CorrelationNode> read = nodes_;
    for (CorrelationNode& node : read) {
        int32_t parent = 0, count = 0;
        if (!(in >> node.correlation >> parent >> count)) return 0;
        if (parent < -1 || parent >= n || count < 0 || count >= std::max(n, 1)) {
            in.setstate(std::ios::failbit);
            return 0;
        }
        node.parent = parent;
        node.children.clear();
        for (int32_t k = 0; k < count; ++k) {
            int32_t child = 0;
            if (!(in >> child)) return 0;
            if (child < 0 || child >= n) {
                in.setstate(std::ios::failbit);
                return 0;
            }
            node.children.push_back(child);
        }
    }
    // Every listed child names this node as its parent, and every node with
    // a parent is listed there once: then the number of listings equals the
    // number of nodes with parents.
    std::size_t listed = 0, withParent = 0;
    for (int i = 0; i < n; ++i) {
        const CorrelationNode& node = read[static_cast<std::size_t>(i)];
        if (node.parent >= 0) ++withParent;
        for (int c : node.children) {
            if (read[static_cast<std::size_t>(c)].parent != i) {
                in.setstate(std::ios::failbit);
                return 0;
            }
            ++listed;
        }
        std::vector<int> sorted = node.children;
        std::sort(sorted.begin(), sorted.end());
        if (std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end()) {
            in.setstate(std::ios::failbit);
            return 0;
        }
    }
    if (listed != withParent) {
        in.setstate(std::ios::failbit);
        return 0;
    }
    // No cycle: the walk up from each node reaches a root within n steps.
    for (int i = 0; i < n; ++i) {
        int p = read[static_cast<std::size_t>(i)].parent;
        for (int steps = 0; p >= 0; ++steps) {
            if (steps > n) {
                in.setstate(std::ios::failbit);
                return 0;
            }
            p = read[static_cast<std::size_t>(p)].parent;
        }
    }
    nodes_ = std::move(read);
    return 1;
}

} // namespace tarvex
