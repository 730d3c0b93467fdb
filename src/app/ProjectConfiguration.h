#pragma once
// A project: everything the program knows about one study, in three parts
// (what is sampled, what is run, what was computed from it), each with a flag
// that says whether it is present, and the project file (.psc) that keeps
// them together by value, factors, sample and model results included.
//
// The project file, section after section:
//   "Prep Configuration" and the Prep record, or "No Prep Configuration"
//   "Model Configuration", the Model record and an empty line, or
//       "No Model Configuration"
//   "Vels Configuration" and the Vels record, or "No Vels Configuration"
// A reader takes any header line other than the positive one (of at most 99
// characters) as the negative one.
//
// Every project object reads config.dat when it is made and rewrites it when
// it goes, the temporary one of a load included.
#include <cstdint>
#include <iosfwd>
#include <string>

#include "app/ConfigDatFile.h"
#include "model/ModelConfiguration.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

inline constexpr const char* kNoProjectFile = "NO FILE";

class ProjectConfiguration {
public:
    explicit ProjectConfiguration(Environment& environment = Environment::instance());
    ~ProjectConfiguration() = default;
    // A project is copied with assign(), which copies only the parts present.
    ProjectConfiguration(const ProjectConfiguration&) = delete;
    ProjectConfiguration& operator=(const ProjectConfiguration&) = delete;

    // Reads the project file at `path`. Returns 1 with fileName() at `path`
    // (made absolute, since loading moves the current directory),
    // or 0 for a file that can't be opened or is damaged anywhere; the object
    // is then as it was. Loading moves the current directory to the
    // directories saved in the file, where they exist.
    [[nodiscard]] int load(const std::string& path);

    // Writes the project to `path`, which becomes fileName() first (made
    // absolute). The file
    // is replaced only once everything is written: a failed save (0) leaves
    // the former file as it was.
    [[nodiscard]] int save(const std::string& path);
    // Writes under fileName(); 0 without touching any file while the project
    // has none.
    [[nodiscard]] int save();

    // The project file's text, and its reader into this object (0 with the
    // stream failed; the object may then be half read: load() reads into a
    // temporary for this reason).
    void write(std::ostream& out) const;
    [[nodiscard]] int read(std::istream& in);

    // Each part is copied where `other` has it and reset where it hasn't;
    // the file name is copied.
    void assign(const ProjectConfiguration& other);

    void setPrep(const PrepConfiguration& p);
    void setModel(const ModelConfiguration& m);
    void setVels(const VelsConfiguration& v);
    // A freshly made, empty part; the flag cleared.
    void resetPrep();
    void resetModel();
    void resetVels();
    // Prep, then Model, then Vels.
    void resetAll();

    const std::string& fileName() const { return fileName_; }
    bool hasFile() const { return fileName_ != kNoProjectFile; }

    PrepConfiguration prep;
    ModelConfiguration model;
    VelsConfiguration vels;
    int32_t hasPrep = 0;
    int32_t hasModel = 0;
    int32_t hasVels = 0;

private:
    std::string fileName_ = kNoProjectFile;
    // Last, so that config.dat is read once the parts exist and written
    // before they go.
    ConfigDatFile configDat_;
};

}  // namespace tarvex
