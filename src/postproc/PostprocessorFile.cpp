#include "postproc/PostprocessorFile.h"

#include <fstream>
#include <new>

#include "common/AtomicFileWriter.h"
#include "common/TextLines.h"
#include "model/ModelConfiguration.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

void writePostprocessorText(std::ostream& out, const PrepConfiguration& prep, const ModelConfiguration& model,
                            const VelsConfiguration& vels) {
    ClassicNumbers classic(out);
    prep.write(out);
    // The Prep record leaves the stream at the store's ten digits; the other
    // records are at six.
    out.precision(6);
    model.write(out);
    vels.write(out);
}

// Running out of memory on a hostile file is a failed read, like any other.
int readPostprocessorText(std::istream& in, PrepConfiguration& prep, ModelConfiguration& model,
                          VelsConfiguration& vels) try {
    ClassicNumbers classic(in);
    PrepConfiguration newPrep;
    ModelConfiguration newModel;
    VelsConfiguration newVels;
    if (!newPrep.read(in) || !in) return 0;
    newModel.read(in);
    if (!in) return 0;
    newVels.read(in);
    if (!in) return 0;
    prep.swap(newPrep);
    model = newModel;
    vels = std::move(newVels);
    return 1;
} catch (const std::bad_alloc&) {
    in.setstate(std::ios::failbit);
    return 0;
}

int savePostprocessorFile(const std::string& path, const PrepConfiguration& prep, const ModelConfiguration& model,
                          const VelsConfiguration& vels) {
    return saveFileAtomically(path, [&](std::ostream& out) { writePostprocessorText(out, prep, model, vels); });
}

int loadPostprocessorFile(const std::string& path, PrepConfiguration& prep, ModelConfiguration& model,
                          VelsConfiguration& vels) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return 0;
    return readPostprocessorText(in, prep, model, vels);
}

}  // namespace tarvex
