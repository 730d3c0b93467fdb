#pragma once
// Root of the factor family: one uncertain (or derived, or fixed) input of the
// model. Subclasses add a distribution (Distribution and below), a fixed value
// (Constant) or an expression over other factors (Relation).
#include <cstdint>
#include <memory>
#include <string>

namespace tarvex {

// Type codes as stored and compared by the rest of the program.
enum FactorType : int {
    kNormal = 0,
    kLogNormal = 1,
    kUniform = 2,
    kLogUniform = 3,
    kWeibull = 4,
    kConstant = 5,
    kExponential = 6,
    kGamma = 7,
    kBeta = 8,
    kTriangular = 9,
    kRelation = 10,
    kDiscrete = 11,
    kDummy = 100,
};

class Factor {
public:
    Factor() = default;
    // A copy takes name and note (subclasses add their parameters); status and
    // errorText start afresh.
    Factor(const Factor& other) : name(other.name), note(other.note) {}
    // Factors are held by pointer in lists and copied through clone(); plain
    // assignment would slice them.
    Factor& operator=(const Factor&) = delete;
    virtual ~Factor() = default;

    virtual int getType() const = 0;
    // Deep copy through the class's own copy constructor.
    virtual std::unique_ptr<Factor> clone() const = 0;

    std::string errorText = "No errors";
    std::string typeName = "Factor";
    int32_t status = 1;
    std::string name = "Noname";
    std::string note;
};

} // namespace tarvex
