#pragma once
// Root of the factor family: one uncertain (or derived, or fixed) input of the
// model. Subclasses add a distribution (Distribution and below), a fixed value
// (Constant) or an expression over other factors (Relation).
#include <cstdint>
#include <iosfwd>
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

    // The factor record of a factor file: type name, name and note lines, then
    // the data line of `status` and the class's parameters (writeData). Numbers
    // take the stream's own format; nothing is changed in it.
    void write(std::ostream& out) const;
    // Reads a record whose type line has already been read: the name (a line
    // of at most 19 characters holding one valid word), the note (at most 254
    // characters), the status and the parameters. Returns 0 and leaves the
    // stream in its fail state on any failure.
    [[nodiscard]] int read(std::istream& in);

    std::string errorText = "No errors";
    std::string typeName = "Factor";
    int32_t status = 1;
    std::string name = "Noname";
    std::string note;

protected:
    // What follows `status` on the data line, up to and including the last
    // newline of the record's data (the list adds the separating blank line).
    virtual void writeData(std::ostream& out) const;
    // Reads what writeData wrote; 0 with the stream's fail state on failure.
    [[nodiscard]] virtual int readData(std::istream& in);
};

} // namespace tarvex
