// Launch requests: every value read is a non-empty part of one line.
#include "FuzzSupport.h"
#include "app/LaunchRequest.h"

namespace tarvex {
namespace {

bool partOfOneLine(const std::string& value) { return !value.empty() && value.find('\n') == std::string::npos; }
bool emptyOrPartOfOneLine(const std::string& value) { return value.empty() || partOfOneLine(value); }

}  // namespace

TARVEX_FUZZ_TARGET(LaunchRequest, 2000) {
    LaunchRequest request;
    if (!request.read(fuzz::scratchInput(input))) {
        fuzz::check(request.empty(), "an unreadable request left values behind");
        return fuzz::Outcome::Refused;
    }
    for (const LaunchRequest::Entry& entry : request.immediate)
        fuzz::check(partOfOneLine(entry.path), "an immediate entry without a path of one line");
    fuzz::check(emptyOrPartOfOneLine(request.internalModel) && emptyOrPartOfOneLine(request.externalModelExecutable) &&
                    emptyOrPartOfOneLine(request.externalModelOutputFile),
                "a remembered value spans lines");
    return request.empty() ? fuzz::Outcome::Refused : fuzz::Outcome::Accepted;
}

}  // namespace tarvex
