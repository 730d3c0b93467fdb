#pragma once
// The pre-processor's central object: the ordered factors, the correlation
// structure between them (dependence-tree nodes and the rank-correlation
// matrix), the sampling order, and an imported Stein sample.
//
// It lives with the correlation code because it owns the tree and the Stein
// sample; the factor classes below it know nothing of lists.
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "correlation/DependenceTree.h"
#include "correlation/SteinSample.h"
#include "factors/Factor.h"

namespace tarvex {

// correlationMode values.
enum CorrelationMode : int {
    kTreeCorrelation = 0,
    kImanConoverCorrelation = 1,
    kNoCorrelation = 2,
    kSteinCorrelation = 3,
};

// Source texts: where the factors come from (otherwise a factor file's path).
inline constexpr const char* kNoFactorSource = "noFactorSel";
inline constexpr const char* kPanelFactorSource = "Using factors from panel";

// Ends each row of factorOrder.
inline constexpr uint32_t kOrderRowEnd = 0xFFFFFFFFu;

inline constexpr const char* kFactorNameInUseText = "   The name of this factor is already in use";

class FactorList {
public:
    FactorList() = default;
    // Copies every factor by its own class's copy constructor (Dummy
    // included), and everything else by value.
    FactorList(const FactorList& other);
    FactorList& operator=(const FactorList& other);
    FactorList(FactorList&&) noexcept = default;
    FactorList& operator=(FactorList&&) noexcept = default;
    ~FactorList() = default;

    // Appends the factor with a root node of its own. A correlatable factor
    // adds a row and a column to the correlation matrix: 0.0, 1.0 on the
    // diagonal. The sampling order is computed anew.
    [[nodiscard]] int addFactor(std::unique_ptr<Factor> factor);
    // addFactor for many at once, the order computed once: a file of
    // thousands of columns would otherwise cost the square of its width.
    [[nodiscard]] int addFactors(std::vector<std::unique_ptr<Factor>> factors);
    // Removes factor i, its node (its links dissolved, see
    // DependenceTree::unlink) and its matrix row and column. Refused, with
    // errorText naming the relation, while another factor that is a relation
    // uses its name: that relation would read 0.0 for it.
    [[nodiscard]] int removeFactor(int i);
    // Puts another factor (a changed kind, say) in place i, keeping its node.
    // A factor in a tree link can't become Constant or Relation. A new name is
    // taken as renameFactor takes it.
    [[nodiscard]] int replaceFactor(int i, std::unique_ptr<Factor> factor);
    // Gives factor i a new name, and the relations that use the old one
    // follow it: Relation::renameFactor replaces every plain occurrence of the
    // old name in their expressions. Refused, with errorText and nothing
    // changed, for a name the factor can't take, a name another factor holds,
    // and a relation that can't follow: its renamed expression would be
    // refused, or would use other names than the renamed one (renaming "a"
    // also turns "ab" into "<new>b"), which would then read 0.0.
    [[nodiscard]] int renameFactor(int i, const std::string& newName);
    // Empties the list: factors, nodes, matrix, order, Stein sample; the
    // correlation mode returns to none. The source text stays.
    void clear();

    int factorCount() const { return static_cast<int>(factors_.size()); }
    // Factors whose type name is neither "Constant" nor "Relation".
    int correlatableCount() const;
    // -1 for an index out of range; 0 for "Constant" and "Relation"; else 1.
    int isCorrelatable(int i) const;
    // -1 for an index out of range; 1 for "Relation"; else 0.
    int isRelation(int i) const;
    // The factor at place i of the list, or null.
    Factor* getFactor(int i) const;
    // Index of the first factor of that name, or -1.
    int findFactor(const std::string& name) const;
    // Row of factor i in the correlation matrix, or -1 if it has none.
    int correlatableIndex(int i) const;

    // Rank-correlation matrix, one row and column per correlatable factor, in
    // list order: a copy, row after row.
    std::vector<float> correlationMatrix() const;
    int matrixSize() const { return static_cast<int>(matrix_.size()); }
    float matrixValue(int row, int column) const;
    // Sets a pair symmetrically; the diagonal stays 1. Values as for links.
    [[nodiscard]] int setMatrixValue(int row, int column, double value);

    // Dependence tree, by factor index (see DependenceTree for the rules).
    const DependenceTree& tree() const { return tree_; }
    [[nodiscard]] int linkFactor(int child, int parent, double correlation);
    [[nodiscard]] int moveLink(int child, int parent);
    [[nodiscard]] int unlinkFactor(int i);
    [[nodiscard]] int setLinkCorrelation(int i, double correlation);
    // 1 if the factor takes part in a tree link.
    int isLinked(int i) const { return tree_.isLinked(i); }

    // Sampling order: rows of factor indices, each ended by kOrderRowEnd. One
    // row per tree of correlatable factors (a root, then its subtree depth
    // first, so parents come before their children), then one row of the
    // constants, then one of the relations, each in list order.
    const std::vector<std::vector<uint32_t>>& factorOrder() const { return order_; }
    int orderRowCount() const { return static_cast<int>(order_.size()); }
    // The factor index at place k of the order; the walk wraps round behind
    // the last row. -1 for an empty list or a negative place.
    int factorAt(int k) const;
    void computeFactorOrder();

    // Stein information. importStein reads a Stein file: mode 1 replaces the
    // factors by Uniform ones with empirical distributions of the columns;
    // any other mode attaches the sample to the factors there and sets the
    // correlation mode to Stein. 0 with errorText on failure; the list stays
    // in the state reached.
    [[nodiscard]] int importStein(const std::string& fileName, int mode);
    // Drops the sample and its file name; a Stein correlation mode returns
    // to none.
    void clearStein();
    bool hasStein() const { return !steinInfo.empty(); }

    // The factor file form (see FactorListFile.cpp). read empties the list
    // first and, on failure, leaves it as far as it got: read into a
    // temporary list where the caller's must survive (FactorFile.h).
    void write(std::ostream& out) const;
    [[nodiscard]] int read(std::istream& in);

    void swap(FactorList& other) noexcept;

    int correlationMode = kNoCorrelation;
    std::string steinFileName;
    SteinSample steinInfo;
    // Where the factors come from, as the pre-processor shows it.
    std::string sourceText = kNoFactorSource;
    // Set by every change through this interface; cleared by the panels.
    int modified = 0;
    const std::string& errorText() const { return errorText_; }

private:
    // Whether the name of factor i may become newName (see renameFactor),
    // leaving aside the relation in place `skip`; errorText when not.
    bool renameAllowed(int i, const std::string& newName, int skip);
    // The relations but the one in place `skip` take the new name.
    void followRename(const std::string& oldName, const std::string& newName, int skip);
    [[nodiscard]] int readCorrelationPart(std::istream& in);
    // addFactor without the new sampling order, for the file reader.
    void appendFactor(std::unique_ptr<Factor> factor);
    void insertMatrixRow(int at);
    void eraseMatrixRow(int at);

    std::string errorText_ = "No errors";
    std::vector<std::unique_ptr<Factor>> factors_;
    DependenceTree tree_;
    // Rows of their own, so that appending a factor costs one row and one
    // column, not a copy of the whole matrix.
    std::vector<std::vector<float>> matrix_;
    std::vector<std::vector<uint32_t>> order_;
    std::vector<int> flatOrder_;
};

} // namespace tarvex
