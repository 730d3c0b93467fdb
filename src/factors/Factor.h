#pragma once
// Root of the factor family: one uncertain (or derived, or fixed) input of the
// model. Subclasses add a distribution (Distribution and below), a fixed value
// (Constant) or an expression over other factors (Relation).
#include <cstddef>
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

inline constexpr const char* kNoteTooLongText = "The note must be one line of at most 254 characters.";

class Factor {
public:
    // The longest note a factor file gives back: its reader keeps lines of
    // this many characters.
    static constexpr std::size_t kMaxNoteLength = 254;

    Factor() = default;
    // A copy takes name and note (subclasses add their parameters and set
    // their type name); status and errorText start afresh.
    Factor(const Factor& other) : name_(other.name_), note_(other.note_) {}
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

    // The class's name as files and lists compare it: it decides the kind of
    // a factor, so only the class sets it.
    const std::string& typeName() const { return typeName_; }
    const std::string& name() const { return name_; }
    const std::string& note() const { return note_; }
    // Each refuses, with errorText and 0, a value its factor file would not
    // give back: a name outside the name rule or over 19 characters
    // (FactorName.h), a note that is not one line of at most kMaxNoteLength
    // characters. A factor of a list is renamed through the list, so that
    // the relations that use it follow.
    [[nodiscard]] int setName(const std::string& newName);
    [[nodiscard]] int setNote(const std::string& text);

    const std::string& errorText() const { return errorText_; }
    int32_t status = 1;

protected:
    // The subclasses' setters say here why they refused a value.
    std::string errorText_ = "No errors";

    // For the constructors: each class's type name and default name.
    void setTypeName(const char* typeName) { typeName_ = typeName; }
    void setDefaultName(const std::string& name) { name_ = name; }

    // What follows `status` on the data line, up to and including the last
    // newline of the record's data (the list adds the separating blank line).
    virtual void writeData(std::ostream& out) const;
    // Reads what writeData wrote; 0 with the stream's fail state on failure.
    [[nodiscard]] virtual int readData(std::istream& in);

private:
    std::string typeName_ = "Factor";
    std::string name_ = "Noname";
    std::string note_;
};

} // namespace tarvex
