#pragma once
// The links of the dependence-tree correlation: one node per factor of the
// list, in the list's order. A node may have a parent, to which it is
// correlated, and children; the links form a forest, never a cycle.
//
// Nodes refer to each other by their index in the list, so that a copy of the
// list copies its tree by value.
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace tarvex {

inline constexpr const char* kCyclicCorrelationText = "   Cyclic correlation not allowed";
inline constexpr const char* kCorrelationRangeText =
    "  Correlation values must fall between -1\n  and 1 and can't be equal to 0";

struct CorrelationNode {
    double correlation = 0.0;  // towards the parent; 0 for a root
    int parent = -1;           // index of the parent node, -1 for a root
    std::vector<int> children; // indices, in the order they were linked
    std::string factorName;
};

class DependenceTree {
public:
    int size() const { return static_cast<int>(nodes_.size()); }
    const CorrelationNode& node(int i) const { return nodes_[static_cast<std::size_t>(i)]; }
    const std::vector<CorrelationNode>& nodes() const { return nodes_; }

    // A new root without children at the end.
    void addNode(const std::string& factorName);
    // Takes node i out of the forest (see unlink) and out of the sequence;
    // the later nodes move down by one and every link is renumbered.
    void removeNode(int i);
    void clear() { nodes_.clear(); }
    void rename(int i, const std::string& factorName);

    // 1 if node i has a parent or a child: its factor takes part in a
    // correlation. 0 otherwise (also for an index out of range).
    int isLinked(int i) const;
    // 1 if `node` lies in the subtree below `ancestor` (not the node itself).
    int isDescendant(int node, int ancestor) const;

    // Correlation values accepted for a link: from -1 to 1, not 0.
    [[nodiscard]] static int checkCorrelation(double value, std::string& errorText);

    // Makes `child` a child of `parent` with the given correlation, taking
    // it (with its own subtree) from its former parent. A child dropped on
    // itself changes nothing and succeeds. Refused with its text when the
    // value is out of range or when `parent` lies below `child`.
    [[nodiscard]] int link(int child, int parent, double correlation, std::string& errorText);
    // The same move keeping the link's correlation.
    [[nodiscard]] int moveLink(int child, int parent, std::string& errorText);
    // Takes the node out of the tree: it leaves its parent and its children
    // become roots (each keeping its own subtree), all with correlation 0.
    void unlink(int i);
    [[nodiscard]] int setCorrelation(int i, double value, std::string& errorText);

    // "Correlation information" lines of the factor file, one per node:
    // correlation, blank, parent or -1, blank, number of children, blank, then
    // each child followed by a blank.
    void write(std::ostream& out) const;
    // Reads `size()` such lines over the present nodes. Links that do not make
    // a forest (an index out of range, a parent that does not list its child,
    // a cycle) set the stream's fail state and leave the links as they were.
    [[nodiscard]] int read(std::istream& in);

private:
    void detachFromParent(int i);

    std::vector<CorrelationNode> nodes_;
};

} // namespace tarvex
