#include "correlation/FactorList.h"

#include <algorithm>
#include <utility>

#include "factors/FactorKinds.h"
#include "factors/FactorName.h"
#include "factors/Relation.h"

namespace tarvex {

FactorList::FactorList(const FactorList& other)
    : correlationMode(other.correlationMode),
      steinFileName(other.steinFileName),
      steinInfo(other.steinInfo),
      sourceText(other.sourceText),
      modified(other.modified),
      errorText_(other.errorText_),
      tree_(other.tree_),
      matrix_(other.matrix_),
      order_(other.order_),
      flatOrder_(other.flatOrder_) {
    factors_.reserve(other.factors_.size());
    for (const auto& f : other.factors_) factors_.push_back(f->clone());
}

FactorList& FactorList::operator=(const FactorList& other) {
    if (this != &other) {
        FactorList copy(other);
        swap(copy);
    }
    return *this;
}

void FactorList::swap(FactorList& other) noexcept {
    using std::swap;
    swap(correlationMode, other.correlationMode);
    swap(steinFileName, other.steinFileName);
    swap(steinInfo, other.steinInfo);
    swap(sourceText, other.sourceText);
    swap(modified, other.modified);
    swap(errorText_, other.errorText_);
    swap(factors_, other.factors_);
    swap(tree_, other.tree_);
    swap(matrix_, other.matrix_);
    swap(order_, other.order_);
    swap(flatOrder_, other.flatOrder_);
}

void FactorList::insertMatrixRow(int at) {
    const auto pos = static_cast<std::size_t>(at);
    for (auto& row : matrix_) row.insert(row.begin() + static_cast<long>(pos), 0.0f);
    std::vector<float> added(matrix_.size() + 1, 0.0f);
    added[pos] = 1.0f;
    matrix_.insert(matrix_.begin() + static_cast<long>(pos), std::move(added));
}

void FactorList::eraseMatrixRow(int at) {
    if (at < 0 || at >= matrixSize()) return;
    matrix_.erase(matrix_.begin() + at);
    for (auto& row : matrix_) row.erase(row.begin() + at);
}

std::vector<float> FactorList::correlationMatrix() const {
    std::vector<float> flat;
    flat.reserve(matrix_.size() * matrix_.size());
    for (const auto& row : matrix_) flat.insert(flat.end(), row.begin(), row.end());
    return flat;
}

int FactorList::addFactor(std::unique_ptr<Factor> factor) {
    if (!factor) return 0;
    appendFactor(std::move(factor));
    computeFactorOrder();
    return 1;
}

int FactorList::addFactors(std::vector<std::unique_ptr<Factor>> factors) {
    for (const auto& factor : factors)
        if (!factor) return 0;
    for (auto& factor : factors) appendFactor(std::move(factor));
    computeFactorOrder();
    return 1;
}

void FactorList::appendFactor(std::unique_ptr<Factor> factor) {
    if (isCorrelatableType(factor->typeName())) insertMatrixRow(matrixSize());
    tree_.addNode(factor->name());
    factors_.push_back(std::move(factor));
    modified = 1;
}

int FactorList::removeFactor(int i) {
    if (i < 0 || i >= factorCount()) return 0;
    const std::string& name = factors_[static_cast<std::size_t>(i)]->name();
    const bool nameStays = std::count_if(factors_.begin(), factors_.end(),
                                         [&](const auto& f) { return f->name() == name; }) > 1;
    for (int k = 0; k < factorCount() && !nameStays; ++k) {
        if (k == i || isRelation(k) != 1) continue;
        const auto* relation = static_cast<const Relation*>(factors_[static_cast<std::size_t>(k)].get());
        if (relation->usesFactor(name)) {
            errorText_ = "   Factor " + name + " is used by relation " + relation->name() + " and can't be removed";
            return 0;
        }
    }
    const int row = correlatableIndex(i);
    if (row >= 0) eraseMatrixRow(row);
    tree_.removeNode(i);
    factors_.erase(factors_.begin() + i);
    modified = 1;
    computeFactorOrder();
    return 1;
}

int FactorList::replaceFactor(int i, std::unique_ptr<Factor> factor) {
    if (i < 0 || i >= factorCount() || !factor) return 0;
    const bool was = isCorrelatable(i) == 1;
    const bool will = isCorrelatableType(factor->typeName()) == 1;
    if (was && !will && tree_.isLinked(i)) {
        errorText_ = "   Can't change to Constant\n or Relation a correlated factor";
        return 0;
    }
    const std::string oldName = factors_[static_cast<std::size_t>(i)]->name();
    const bool renamed = factor->name() != oldName;
    if (renamed && !renameAllowed(i, factor->name(), i)) return 0;
    if (was && !will) eraseMatrixRow(correlatableIndex(i));
    tree_.rename(i, factor->name());
    if (renamed) followRename(oldName, factor->name(), i);
    factors_[static_cast<std::size_t>(i)] = std::move(factor);
    if (!was && will) insertMatrixRow(correlatableIndex(i));
    modified = 1;
    computeFactorOrder();
    return 1;
}

int FactorList::renameFactor(int i, const std::string& newName) {
    if (i < 0 || i >= factorCount()) return 0;
    Factor& factor = *factors_[static_cast<std::size_t>(i)];
    const std::string oldName = factor.name();
    if (newName == oldName) return 1;
    if (!renameAllowed(i, newName, -1)) return 0;
    (void)factor.setName(newName);  // renameAllowed has checked the name
    tree_.rename(i, newName);
    followRename(oldName, newName, -1);
    modified = 1;
    return 1;
}

bool FactorList::renameAllowed(int i, const std::string& newName, int skip) {
    if (const char* fault = factorNameFault(newName)) {
        errorText_ = fault;
        return false;
    }
    const int holder = findFactor(newName);
    if (holder >= 0 && holder != i) {
        errorText_ = kFactorNameInUseText;
        return false;
    }
    const std::string& oldName = factors_[static_cast<std::size_t>(i)]->name();
    for (int k = 0; k < factorCount(); ++k) {
        if (k == skip || isRelation(k) != 1) continue;
        const auto& relation = static_cast<const Relation&>(*factors_[static_cast<std::size_t>(k)]);
        if (!relation.usesFactor(oldName)) continue;
        const std::string renamed = relation.renamedExpression(oldName, newName);
        const std::string refusal = "   Relation " + relation.name() + " can't follow the new name: ";
        if (renamed.size() > Relation::kMaxExpressionLength) {
            errorText_ = refusal + kRelationTooLongText;
            return false;
        }
        // What the relation uses afterwards must be what it used before,
        // with the one name changed.
        std::vector<std::string> expected = relation.factorNames();
        std::replace(expected.begin(), expected.end(), oldName, newName);
        std::sort(expected.begin(), expected.end());
        expected.erase(std::unique(expected.begin(), expected.end()), expected.end());
        Relation trial;
        const bool accepted = trial.setExpression(renamed) == 1;
        std::vector<std::string> used = trial.factorNames();
        std::sort(used.begin(), used.end());
        if (!accepted || used != expected) {
            errorText_ = refusal + "its expression would become " + renamed;
            return false;
        }
    }
    return true;
}

void FactorList::followRename(const std::string& oldName, const std::string& newName, int skip) {
    for (int k = 0; k < factorCount(); ++k) {
        if (k != skip && isRelation(k) == 1)
            static_cast<Relation*>(factors_[static_cast<std::size_t>(k)].get())->renameFactor(oldName, newName);
    }
}

void FactorList::clear() {
    factors_.clear();
    tree_.clear();
    matrix_.clear();
    order_.clear();
    flatOrder_.clear();
    steinInfo.clear();
    steinFileName.clear();
    correlationMode = kNoCorrelation;
    modified = 1;
}

int FactorList::correlatableCount() const {
    int n = 0;
    for (const auto& f : factors_) n += isCorrelatableType(f->typeName());
    return n;
}

int FactorList::isCorrelatable(int i) const {
    if (i < 0 || i >= factorCount()) return -1;
    return isCorrelatableType(factors_[static_cast<std::size_t>(i)]->typeName());
}

int FactorList::isRelation(int i) const {
    if (i < 0 || i >= factorCount()) return -1;
    return factors_[static_cast<std::size_t>(i)]->typeName() == "Relation" ? 1 : 0;
}

Factor* FactorList::getFactor(int i) const {
    if (i < 0 || i >= factorCount()) return nullptr;
    return factors_[static_cast<std::size_t>(i)].get();
}

int FactorList::findFactor(const std::string& name) const {
    for (int i = 0; i < factorCount(); ++i) {
        if (factors_[static_cast<std::size_t>(i)]->name() == name) return i;
    }
    return -1;
}

int FactorList::correlatableIndex(int i) const {
    if (isCorrelatable(i) != 1) return -1;
    int row = 0;
    for (int k = 0; k < i; ++k) row += isCorrelatable(k);
    return row;
}

float FactorList::matrixValue(int row, int column) const {
    const int n = matrixSize();
    if (row < 0 || row >= n || column < 0 || column >= n) return 0.0f;
    return matrix_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

int FactorList::setMatrixValue(int row, int column, double value) {
    const int n = matrixSize();
    if (row < 0 || row >= n || column < 0 || column >= n || row == column) {
        errorText_ = "No such pair in the correlation matrix";
        return 0;
    }
    if (!DependenceTree::checkCorrelation(value, errorText_)) return 0;
    matrix_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)] = static_cast<float>(value);
    matrix_[static_cast<std::size_t>(column)][static_cast<std::size_t>(row)] = static_cast<float>(value);
    modified = 1;
    return 1;
}

int FactorList::linkFactor(int child, int parent, double correlation) {
    if (isCorrelatable(child) != 1 || isCorrelatable(parent) != 1) {
        errorText_ = "Only factors with a distribution can be correlated";
        return 0;
    }
    if (!tree_.link(child, parent, correlation, errorText_)) return 0;
    modified = 1;
    computeFactorOrder();
    return 1;
}

int FactorList::moveLink(int child, int parent) {
    if (isCorrelatable(child) != 1 || isCorrelatable(parent) != 1) {
        errorText_ = "Only factors with a distribution can be correlated";
        return 0;
    }
    if (!tree_.moveLink(child, parent, errorText_)) return 0;
    modified = 1;
    computeFactorOrder();
    return 1;
}

int FactorList::unlinkFactor(int i) {
    if (i < 0 || i >= factorCount()) return 0;
    tree_.unlink(i);
    modified = 1;
    computeFactorOrder();
    return 1;
}

int FactorList::setLinkCorrelation(int i, double correlation) {
    if (!tree_.setCorrelation(i, correlation, errorText_)) return 0;
    modified = 1;
    return 1;
}

void FactorList::computeFactorOrder() {
    order_.clear();
    flatOrder_.clear();
    const int n = factorCount();
    // Depth first from each root; the tree has no cycle, and the explicit
    // stack keeps deep chains off the call stack.
    for (int root = 0; root < n; ++root) {
        if (isCorrelatable(root) != 1 || tree_.node(root).parent >= 0) continue;
        std::vector<uint32_t> row;
        std::vector<int> stack{root};
        while (!stack.empty()) {
            const int at = stack.back();
            stack.pop_back();
            row.push_back(static_cast<uint32_t>(at));
            const auto& children = tree_.node(at).children;
            for (auto it = children.rbegin(); it != children.rend(); ++it) stack.push_back(*it);
        }
        order_.push_back(std::move(row));
    }
    std::vector<uint32_t> constants, relations;
    for (int i = 0; i < n; ++i) {
        if (isCorrelatable(i) == 1) continue;
        (isRelation(i) == 1 ? relations : constants).push_back(static_cast<uint32_t>(i));
    }
    if (!constants.empty()) order_.push_back(std::move(constants));
    if (!relations.empty()) order_.push_back(std::move(relations));
    for (auto& row : order_) {
        for (uint32_t index : row) flatOrder_.push_back(static_cast<int>(index));
        row.push_back(kOrderRowEnd);
    }
}

int FactorList::factorAt(int k) const {
    if (flatOrder_.empty() || k < 0) return -1;
    return flatOrder_[static_cast<std::size_t>(k) % flatOrder_.size()];
}

void FactorList::clearStein() {
    steinInfo.clear();
    steinFileName.clear();
    if (correlationMode == kSteinCorrelation) correlationMode = kNoCorrelation;
    modified = 1;
}

} // namespace tarvex
