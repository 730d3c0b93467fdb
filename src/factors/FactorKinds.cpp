#include "factors/FactorKinds.h"

#include "factors/Beta.h"
#include "factors/Constant.h"
#include "factors/Discrete.h"
#include "factors/Exponential.h"
#include "factors/Gamma.h"
#include "factors/LogNormal.h"
#include "factors/LogUniform.h"
#include "factors/Normal.h"
#include "factors/Relation.h"
#include "factors/Triangular.h"
#include "factors/Uniform.h"
#include "factors/Weibull.h"

namespace tarvex {

std::unique_ptr<Factor> newReadableFactor(const std::string& t) {
    if (t == "Constant") return std::make_unique<Constant>();
    if (t == "Normal") return std::make_unique<Normal>();
    if (t == "Exponential") return std::make_unique<Exponential>();
    if (t == "Gamma") return std::make_unique<Gamma>();
    if (t == "Beta") return std::make_unique<Beta>();
    if (t == "Relation") return std::make_unique<Relation>();
    if (t == "Weibull") return std::make_unique<Weibull>();
    if (t == "LogNormal") return std::make_unique<LogNormal>();
    if (t == "LogUniform") return std::make_unique<LogUniform>();
    if (t == "Triangular") return std::make_unique<Triangular>();
    if (t == "Uniform") return std::make_unique<Uniform>();
    if (t == "Discrete") return std::make_unique<Discrete>();
    return nullptr;
}

int isCorrelatableType(const std::string& typeName) {
    return typeName == "Constant" || typeName == "Relation" ? 0 : 1;
}

} // namespace tarvex
